#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include "testing/server/LocalServer.h"

namespace kifo::shop {

/// The shop's server, in the same process: campaigns and their pictures, and signals for what it
/// receives.
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
  /// `detail`: the parameter that says most about the event.
  void eventReceived(const QString& name, const QString& detail);
  /// Someone posted a push's user info, a JSON object, to "/push".
  void pushReceived(const QByteArray& push);

 private:
  void servePictures();
  void serveCampaigns();
  void servePushes();

  testing::LocalServer server_;
};

}  // namespace kifo::shop
