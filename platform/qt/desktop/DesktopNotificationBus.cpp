#include "platform/qt/desktop/DesktopNotificationBus.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QFileInfo>
#include <QPointer>
#include <atomic>
#include <limits>
#include <thread>
#include <utility>

namespace kifo {
namespace {

const auto SERVICE = QStringLiteral("org.freedesktop.Notifications");
const auto PATH = QStringLiteral("/org/freedesktop/Notifications");
const auto PROPERTIES = QStringLiteral("org.freedesktop.DBus.Properties");
const auto BUS = QStringLiteral("org.freedesktop.DBus");

constexpr int FOREVER = std::numeric_limits<int>::max();

QDBusMessage methodCall(const QString& destination, const QString& interface, const QString& method,
                        const QVariantList& arguments = {}) {
  auto message = QDBusMessage::createMethodCall(destination, PATH, interface, method);
  message.setArguments(arguments);
  return message;
}

bool isError(const QDBusMessage& reply) {
  return reply.type() == QDBusMessage::ErrorMessage;
}

/// The bus says that no service has the name and none could be started.
bool saysNoService(const QDBusMessage& reply) {
  static const QStringList names = {QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown"),
                                    QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner"),
                                    QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"),
                                    QStringLiteral("org.freedesktop.DBus.Error.TimedOut")};
  return isError(reply) &&
         (names.contains(reply.errorName()) ||
          reply.errorName().startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn.")));
}

/// The service, or the bus, ended before it answered.
bool saysServiceWent(const QDBusMessage& reply) {
  static const QStringList names = {QStringLiteral("org.freedesktop.DBus.Error.NoReply"),
                                    QStringLiteral("org.freedesktop.DBus.Error.Disconnected"),
                                    QStringLiteral("org.freedesktop.DBus.Error.Timeout")};
  return isError(reply) && names.contains(reply.errorName());
}

/// Address of the session's bus; empty leaves the search to the bus library. That library searches
/// once in a process; a bus that starts later is found here.
QString sessionAddress() {
  if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return {};
  const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
  return QFileInfo::exists(socket) ? QStringLiteral("unix:path=") + socket : QString();
}

}  // namespace

DesktopNotificationBus::DesktopNotificationBus(QString address, int retryInterval)
    : address_(std::move(address)),
      retryInterval_(retryInterval),
      link_(std::make_shared<UiLink<DesktopNotificationBus>>(this)) {
  qDBusRegisterMetaType<NotificationImage>();
  nextLook_.setSingleShot(true);
  connect(&nextLook_, &QTimer::timeout, this, &DesktopNotificationBus::look);
  look();
}

DesktopNotificationBus::~DesktopNotificationBus() {
  link_->close();
  if (connection_) QDBusConnection::disconnectFromBus(connection_->name());
}

bool DesktopNotificationBus::isFromService(const QDBusMessage& signal) const {
  return !owner_.isEmpty() && signal.service() == owner_;
}

void DesktopNotificationBus::look() {
  if (state_ != State::disconnected && state_ != State::absent) return;
  const qint64 early = lastLook_.isValid() ? retryInterval_ - lastLook_.elapsed() : 0;
  if (early > 0) {
    if (!nextLook_.isActive()) nextLook_.start(static_cast<int>(early));
    return;
  }
  connection_ ? ask() : connectToBus();
}

void DesktopNotificationBus::refresh() {
  state_ == State::ready ? readInhibited() : look();
}

/// Connecting blocks until the bus answers and may start one, so another thread does it.
void DesktopNotificationBus::connectToBus() {
  static std::atomic<int> connections = 0;
  state_ = State::connecting;
  lastLook_.start();
  const QString name = QStringLiteral("kifo-notifications-%1").arg(++connections);
  const QString address = address_.isEmpty() ? sessionAddress() : address_;
  std::thread([name, address, link = link_] {
    const auto made = address.isEmpty()
                          ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                          : QDBusConnection::connectToBus(address, name);
    const bool taken = link->post([made](DesktopNotificationBus& bus) { bus.connected(made); });
    if (!taken) QDBusConnection::disconnectFromBus(name);
  }).detach();
}

void DesktopNotificationBus::connected(const QDBusConnection& connection) {
  if (!connection.isConnected()) {
    QDBusConnection::disconnectFromBus(connection.name());
    miss(State::disconnected);
    return;
  }
  connection_ = connection;
  subscribe();
  ask();
}

/// Subscribes to every sender and compares the sender later: with the service's name here, Qt would
/// look up its owner and block until the answer.
void DesktopNotificationBus::subscribe() {
  QDBusConnection& bus = *connection_;
  bus.connect(QString(), PATH, SERVICE, QString(), this, SLOT(onServiceSignal(QDBusMessage)));
  bus.connect(QString(), PATH, PROPERTIES, QStringLiteral("PropertiesChanged"), this,
              SLOT(onPropertiesChanged(QDBusMessage)));
  bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus"), BUS,
              QStringLiteral("NameOwnerChanged"), {SERVICE}, QString(), this,
              SLOT(onNameOwnerChanged(QDBusMessage)));
  bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
              QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
              SLOT(onDisconnected()));
}

void DesktopNotificationBus::ask() {
  state_ = State::asking;
  lastLook_.start();
  send(methodCall(SERVICE, SERVICE, QStringLiteral("GetCapabilities")),
       [this](const QDBusMessage& reply) { answered(reply); });
}

/// An error of the service itself, such as an unknown method, still shows that it exists.
void DesktopNotificationBus::answered(const QDBusMessage& reply) {
  if (saysNoService(reply)) return miss(State::absent);
  if (saysServiceWent(reply)) return lose(State::absent);
  state_ = State::ready;
  owner_ = reply.service();
  capabilities_ = isError(reply)
                      ? DesktopCapabilities()
                      : DesktopCapabilities::of(reply.arguments().value(0).toStringList());
  readInhibited();
  Q_EMIT found();
}

/// Services that know no "Inhibited" answer with an error: they do not inhibit.
void DesktopNotificationBus::readInhibited() {
  if (readingInhibited_) return;
  readingInhibited_ = true;
  send(
      methodCall(owner_, PROPERTIES, QStringLiteral("Get"), {SERVICE, QStringLiteral("Inhibited")}),
      [this](const QDBusMessage& reply) {
        readingInhibited_ = false;
        if (saysServiceWent(reply) || saysNoService(reply)) return;
        const auto value = reply.arguments().value(0).value<QDBusVariant>().variant();
        hasPermission_ = true;
        Q_EMIT permissionRead(!isError(reply) && value.toBool() ? denied : authorized);
      });
}

void DesktopNotificationBus::miss(State state) {
  state_ = state;
  if (!hasPermission_) Q_EMIT permissionRead(denied);
  Q_EMIT missed();
}

void DesktopNotificationBus::lose(State state) {
  ++generation_;
  owner_.clear();
  readingInhibited_ = false;
  state_ = state;
  Q_EMIT lost();
}

void DesktopNotificationBus::onNameOwnerChanged(const QDBusMessage& signal) {
  if (signal.service() != BUS) return;
  const QString owner = signal.arguments().value(2).toString();
  if (!owner.isEmpty() && owner == owner_) return;
  lose(State::absent);
  if (!owner.isEmpty() && state_ == State::absent) ask();
}

void DesktopNotificationBus::onDisconnected() {
  if (!connection_) return;
  const QString name = connection_->name();
  connection_.reset();
  QDBusConnection::disconnectFromBus(name);
  lose(State::disconnected);
}

void DesktopNotificationBus::onServiceSignal(const QDBusMessage& signal) {
  if (isFromService(signal)) Q_EMIT signalled(signal);
}

void DesktopNotificationBus::onPropertiesChanged(const QDBusMessage& signal) {
  if (isFromService(signal) && signal.arguments().value(0).toString() == SERVICE) readInhibited();
}

void DesktopNotificationBus::call(const QString& method, const QVariantList& arguments,
                                  Reply done) {
  if (state_ != State::ready) return;
  // To the owner that gave the numbers: a call to the name could reach the next service.
  send(methodCall(owner_, SERVICE, method, arguments),
       [this, done = std::move(done)](const QDBusMessage& reply) {
         saysServiceWent(reply) || saysNoService(reply) ? lose(State::absent) : done(reply);
       });
}

void DesktopNotificationBus::send(const QDBusMessage& message, Reply done) {
  auto* watcher = new QDBusPendingCallWatcher(connection_->asyncCall(message, FOREVER), this);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this,
                   [this, watcher, generation = generation_, done = std::move(done)] {
                     watcher->deleteLater();
                     if (generation == generation_) done(watcher->reply());
                   });
}

}  // namespace kifo
