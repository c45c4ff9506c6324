#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

#include "platform/qt/UiLink.h"
#include "platform/qt/desktop/DesktopNotificationMessage.h"

namespace kifo {

/// Finds the bus and the service org.freedesktop.Notifications on it, on a connection of its own.
///
/// | state | meaning | next |
/// |---|---|---|
/// | disconnected | there is no bus | connecting: `look` |
/// | connecting | a thread connects | asking, or disconnected |
/// | asking | GetCapabilities was sent | ready, or absent |
/// | absent | no service on the bus | asking: `look`, or a service takes the name |
/// | ready | the service answers | asking or absent: the name changes; disconnected |
///
/// Every call is asynchronous and waits for its answer as long as it takes, so that a service that
/// hangs is waited for and not asked twice.
///
/// **Threading:** UI thread only; the signals are sent on it.
class DesktopNotificationBus : public QObject {
  Q_OBJECT

 public:
  enum class State { disconnected, connecting, asking, absent, ready };
  /// The permission as the port counts it.
  enum Permission { notDetermined = 0, denied = 1, authorized = 2 };
  using Reply = std::function<void(const QDBusMessage&)>;

  /// An empty `address` names the session's bus. `retryInterval`: milliseconds between two looks.
  DesktopNotificationBus(QString address, int retryInterval);
  ~DesktopNotificationBus() override;

  [[nodiscard]] State state() const { return state_; }
  [[nodiscard]] const DesktopCapabilities& capabilities() const { return capabilities_; }

  /// Looks for the service when none is known: now, or once `retryInterval` has passed since the
  /// last look.
  void look();
  /// Reads the permission anew, or looks for the service.
  void refresh();

  /// Calls the service while the state is `ready`. `done` is not called when the service ends
  /// first.
  void call(const QString& method, const QVariantList& arguments, Reply done);

 Q_SIGNALS:
  void found();
  /// A look found no service.
  void missed();
  /// The service ended. Its open calls get no answer and its numbers are void.
  void lost();
  /// Also sent when the permission is the same again. A look that finds no service counts as
  /// denied, but only until a service has answered once.
  void permissionRead(int permission);
  /// A signal of the current service.
  void signalled(const QDBusMessage& signal);

 private Q_SLOTS:
  void onServiceSignal(const QDBusMessage& signal);
  void onPropertiesChanged(const QDBusMessage& signal);
  void onNameOwnerChanged(const QDBusMessage& signal);
  void onDisconnected();

 private:
  [[nodiscard]] bool isFromService(const QDBusMessage& signal) const;

  void connectToBus();
  void connected(const QDBusConnection& connection);
  void subscribe();
  void ask();
  void answered(const QDBusMessage& reply);
  void readInhibited();
  void miss(State state);
  void lose(State state);
  void send(const QDBusMessage& message, Reply done);

  const QString address_;
  const int retryInterval_;
  const std::shared_ptr<UiLink<DesktopNotificationBus>> link_;

  State state_ = State::disconnected;
  std::optional<QDBusConnection> connection_;
  QString owner_;  ///< The service's unique name; empty while there is none.
  DesktopCapabilities capabilities_;
  quint64 generation_ = 0;  ///< Counts services, so that answers of an earlier one are dropped.
  bool readingInhibited_ = false;
  bool hasPermission_ = false;  ///< A service has answered whether it may be used.
  QElapsedTimer lastLook_;
  QTimer nextLook_;
};

}  // namespace kifo
