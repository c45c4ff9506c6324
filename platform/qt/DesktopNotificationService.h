#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/qt/DesktopNotification.h"
#include "platform/qt/DesktopNotificationLedger.h"
#include "platform/qt/DesktopNotificationMessage.h"

namespace kifo {

/// Talks to org.freedesktop.Notifications on a bus connection of its own. Every call is
/// asynchronous and waits for its answer as long as it takes, so that a service that hangs is
/// waited for and not asked twice; one notification is under way at a time, the rest waits in a
/// bounded queue. What a service had not answered, or still showed, when it went is shown by the
/// next one.
///
/// **Threading:** UI thread only, but for `Link`, through which other threads reach it. The
/// listener is called on the UI thread and may destroy the service.
class DesktopNotificationService : public QObject {
  Q_OBJECT

 public:
  /// What the port calls the permission.
  enum Status { notDetermined = 0, denied = 1, authorized = 2 };

  struct Settings {
    DesktopApplication application;
    QString busAddress;         ///< Empty: the session's bus.
    bool imagesAsData = false;  ///< Never name a file to the service.
    int dismissalGrace = 1000;  ///< Milliseconds in which an action may follow a close.
    int retryInterval = 5000;   ///< Milliseconds between two looks for a service that is missing.
    std::size_t capacity = 32;  ///< Notifications that wait for the service.
  };

  struct Listener {
    std::function<void(const DesktopNotificationLedger::Click&)> clicked;
    std::function<void(const NotificationContent&)> dismissed;
    std::function<void(int)> statusChanged;
  };

  /// Reaches the service from any thread, and finds nobody once it is gone.
  class Link {
   public:
    /// Runs `task` on the UI thread later; false when the service is gone.
    bool post(std::function<void(DesktopNotificationService&)> task);

   private:
    friend class DesktopNotificationService;
    std::mutex mutex_;
    DesktopNotificationService* service_ = nullptr;  // guarded by mutex_
  };

  DesktopNotificationService(Settings settings, Listener listener);
  ~DesktopNotificationService() override;

  [[nodiscard]] std::shared_ptr<Link> link() const { return link_; }

  /// Shows the notification as soon as there is a service to show it.
  void show(DesktopNotification notification);
  /// Takes the notification back, shown or not.
  void close(const std::string& identifier);
  /// Asks the service anew whether it may be used, and looks for one when there is none.
  void refresh();

  /// Notifications that no service shows yet.
  [[nodiscard]] std::size_t waiting() const { return queue_.size() + (underWay_ ? 1 : 0); }

 private Q_SLOTS:
  void onActionInvoked(const QDBusMessage& signal);
  void onActivationToken(const QDBusMessage& signal);
  void onNotificationClosed(const QDBusMessage& signal);
  void onPropertiesChanged(const QDBusMessage& signal);
  void onNameOwnerChanged(const QDBusMessage& signal);
  void onDisconnected();

 private:
  using Reply = std::function<void(const QDBusMessage&)>;
  using Signal = std::function<void()>;

  struct UnderWay {
    DesktopNotification notification;
    DesktopPicture picture;
    bool close = false;  ///< Taken back while the service was being asked.
  };

  // Finding the service.
  void connectToBus();
  void connected(const QDBusConnection& connection);
  void subscribe();
  void look();
  void lookLater();
  void ask();
  void answered(const QDBusMessage& reply);
  void readInhibited();
  void serviceWent();
  void setStatus(int status);

  // Showing.
  void drain();
  void send();
  /// Decoding a large picture takes longer than a frame; another thread does it.
  void sendWithPixels();
  void sent(const QDBusMessage& reply);
  void refused(const QDBusMessage& reply);
  void putBack();
  void dropOldest();
  void closeOnDesktop(DesktopNotificationLedger::Id id);

  /// Calls the service; `done` hears nothing more once that service has gone.
  void call(const QDBusMessage& message, Reply done);
  /// The number that a signal of the service is about; none for a signal of anybody else.
  [[nodiscard]] std::optional<DesktopNotificationLedger::Id> subjectOf(
      const QDBusMessage& signal) const;
  /// Runs `signal` now, or when its notification's number is known.
  void take(DesktopNotificationLedger::Id id, Signal signal);
  void replayEarlySignals();

  const Settings settings_;
  const Listener listener_;
  const std::shared_ptr<Link> link_ = std::make_shared<Link>();

  std::optional<QDBusConnection> connection_;
  QString connectionName_;
  QString owner_;  ///< The service's unique name; empty while there is none.
  DesktopCapabilities capabilities_;
  quint64 generation_ = 0;  ///< Counts services, so that answers of one that went are dropped.
  bool connecting_ = false;
  bool asking_ = false;
  bool ready_ = false;  ///< The service has told what it can do.
  bool readingInhibited_ = false;
  bool lookingLater_ = false;
  QElapsedTimer lastLook_;

  std::deque<DesktopNotification> queue_;
  std::optional<UnderWay> underWay_;
  std::vector<Signal> early_;  ///< Came before the answer that tells their notification's number.
  DesktopNotificationLedger ledger_;
};

}  // namespace kifo
