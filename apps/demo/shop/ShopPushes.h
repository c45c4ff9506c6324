#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <memory>

#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"
#include "platform/qt/DesktopNotificationCentre.h"

namespace kifo::shop {

/// The shop's pushes: passes them to the desktop, with signals for what came and what was clicked.
///
/// **Threading:** UI thread only, made after the QApplication and before the SDK starts.
class ShopPushes : public QObject {
  Q_OBJECT

 public:
  /// `busAddress`: another bus than the session's; empty for that one.
  explicit ShopPushes(const QString& busAddress = {});

  [[nodiscard]] std::shared_ptr<DesktopNotificationCentre> centre() const { return centre_; }

  /// Takes a push's user info as it came, a JSON object. Other texts are ignored.
  void deliver(const QByteArray& push);

 Q_SIGNALS:
  void arrived(const kifo::Notification& push);
  /// The push or one of its buttons was clicked; it leads to `link`, or nowhere when that is empty.
  void clicked(const QString& link);

 private:
  std::shared_ptr<DesktopNotificationCentre> centre_;
};

}  // namespace kifo::shop
