#pragma once

#include <QDBusMessage>
#include <QObject>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/qt/UiLink.h"
#include "platform/qt/desktop/DesktopNotificationBus.h"
#include "platform/qt/desktop/DesktopNotificationLedger.h"
#include "platform/qt/desktop/DesktopNotificationMessage.h"
#include "platform/qt/desktop/PushPictures.h"

namespace kifo {

/// Shows notifications on the desktop's service and reports what the user does with them. One
/// Notify is under way at a time, the others wait in a queue. When a service ends, the next one
/// shows what it had not answered or still showed.
///
/// While there is no service, only the newest `capacity` notifications wait. While there is one,
/// none is dropped, so a service that hangs makes the queue grow.
///
/// **Threading:** UI thread only, but for `link`, through which other threads reach it. The
/// listener is called on the UI thread and may destroy the service.
class DesktopNotificationService : public QObject {
  Q_OBJECT

 public:
  struct Settings {
    DesktopApplication application;
    QString busAddress;         ///< Empty: the session's bus.
    bool imagesAsData = false;  ///< Never name a file to the service.
    int pictureGrace = 1000;    ///< Milliseconds that a push waits for its picture.
    int dismissalGrace = 1000;  ///< Milliseconds in which an action may follow a close.
    int retryInterval = 5000;   ///< Milliseconds between two looks for a service that is missing.
    std::size_t capacity = 32;  ///< Notifications that wait while there is no service.
  };

  struct Listener {
    std::function<void(const DesktopNotificationLedger::Click&)> clicked;
    std::function<void(const NotificationContent&)> dismissed;
    std::function<void(int)> permissionRead;
  };

  using Link = UiLink<DesktopNotificationService>;

  DesktopNotificationService(Settings settings, Listener listener);
  ~DesktopNotificationService() override;

  [[nodiscard]] std::shared_ptr<Link> link() const { return link_; }

  /// Shows the notification as soon as there is a service to show it; with an `imageUrl` once its
  /// picture is there or late.
  void show(DesktopNotification notification, const std::string& imageUrl = {});
  /// Takes the notification back, shown or not.
  void close(const std::string& identifier);
  /// Asks the service anew whether it may be used, and looks for one when there is none.
  void refresh() { bus_.refresh(); }

 private:
  using Id = DesktopNotificationLedger::Id;

  struct UnderWay {
    DesktopNotification notification;
    Id replaces = 0;
    DesktopPicture picture;
    bool close = false;  ///< Taken back while the service was being asked.
  };

  // The queue.
  void enqueue(DesktopNotification notification);
  /// Adds the picture to a push that is shown, or waits, without it.
  void addPicture(DesktopNotification notification);
  [[nodiscard]] std::deque<DesktopNotification>::iterator queued(const std::string& identifier);
  void putBack();
  void dropOldest();
  [[nodiscard]] bool isIdle() const { return queue_.empty() && !underWay_; }

  // One Notify.
  void sendNext();
  void send();
  /// Decoding a large picture takes longer than a frame; another thread does it.
  void sendWithPixels();
  void answered(const QDBusMessage& reply);
  void sent(Id id);
  void refused(const QDBusMessage& reply);
  void closeOnDesktop(Id id);

  // Service and user.
  void serviceFound();
  void serviceMissed();
  void serviceLost();
  void onSignal(const QDBusMessage& signal);
  void actOn(Id id, const QDBusMessage& signal);
  void actionInvoked(Id id, const std::string& key);
  void notificationClosed(Id id, std::uint32_t reason);

  const Settings settings_;
  const Listener listener_;
  const std::shared_ptr<Link> link_;
  PushPictures pictures_;
  DesktopNotificationBus bus_;

  std::deque<DesktopNotification> queue_;
  std::optional<UnderWay> underWay_;
  quint64 services_ = 0;  ///< Counts services, so that a picture for an earlier one is dropped.
  std::vector<QDBusMessage> early_;  ///< Signals that came before their notification's number.
  DesktopNotificationLedger ledger_;
};

}  // namespace kifo
