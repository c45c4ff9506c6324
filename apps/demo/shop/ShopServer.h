#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include "testing/server/LocalServer.h"

namespace kifo::shop {

/// The shop's server, in the same process: campaigns, their pictures, and an ear for events.
///
/// **Threading:** made and started on the UI thread; its signals are sent from the server's own
/// threads.
class ShopServer : public QObject {
  Q_OBJECT

 public:
  explicit ShopServer(QObject* parent = nullptr);

  /// False when no port can be had.
  bool start();

  [[nodiscard]] testing::LocalServer& server() { return server_; }

 Q_SIGNALS:
  /// An event arrived; `detail` says the most telling of its particulars.
  void heard(const QString& name, const QString& detail);
  /// Someone posted a push's user info, a JSON object, to "/push".
  void pushed(const QByteArray& push);

 private:
  void servePictures();
  void serveCampaigns();
  void servePushes();

  testing::LocalServer server_;
};

}  // namespace kifo::shop
