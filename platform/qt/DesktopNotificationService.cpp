#include "platform/qt/DesktopNotificationService.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoders.h"

namespace kifo {
namespace {

const auto SERVICE = QStringLiteral("org.freedesktop.Notifications");
const auto PATH = QStringLiteral("/org/freedesktop/Notifications");
const auto PROPERTIES = QStringLiteral("org.freedesktop.DBus.Properties");
const auto BUS = QStringLiteral("org.freedesktop.DBus");

constexpr int FOREVER = std::numeric_limits<int>::max();
constexpr int MOST_ATTEMPTS = 5;
constexpr std::size_t MOST_EARLY_SIGNALS = 32;
constexpr quint32 UNDEFINED_REASON = 4;

using Id = DesktopNotificationLedger::Id;

void print(std::string_view message) {
  Console::print(logTag("DesktopNotificationCentre"), message);
}

QDBusMessage methodCall(const QString& destination, const QString& interface, const QString& method,
                        const QVariantList& arguments = {}) {
  auto message = QDBusMessage::createMethodCall(destination, PATH, interface, method);
  message.setArguments(arguments);
  return message;
}

bool isError(const QDBusMessage& reply) {
  return reply.type() == QDBusMessage::ErrorMessage;
}

/// The bus itself says that nobody bears the service's name and nobody could be started.
bool saysNoService(const QDBusMessage& reply) {
  static const QStringList names = {QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown"),
                                    QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner"),
                                    QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"),
                                    QStringLiteral("org.freedesktop.DBus.Error.TimedOut")};
  return isError(reply) &&
         (names.contains(reply.errorName()) ||
          reply.errorName().startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn.")));
}

/// The service, or the bus, went away before it answered.
bool saysServiceWent(const QDBusMessage& reply) {
  static const QStringList names = {QStringLiteral("org.freedesktop.DBus.Error.NoReply"),
                                    QStringLiteral("org.freedesktop.DBus.Error.Disconnected"),
                                    QStringLiteral("org.freedesktop.DBus.Error.Timeout")};
  return isError(reply) && names.contains(reply.errorName());
}

/// In a sandbox the desktop sees another file system than the program does.
bool isSandboxed() {
  return QFileInfo::exists(QStringLiteral("/.flatpak-info")) || qEnvironmentVariableIsSet("SNAP");
}

QString imagePathOf(const DesktopNotification& notification) {
  const auto& attachments = notification.content->attachments;
  return attachments.empty() ? QString() : QString::fromStdString(attachments.front().path);
}

}  // namespace

bool DesktopNotificationService::Link::post(std::function<void(DesktopNotificationService&)> task) {
  const std::lock_guard lock(mutex_);
  if (!service_) return false;
  return QMetaObject::invokeMethod(
      service_, [service = service_, task = std::move(task)] { task(*service); },
      Qt::QueuedConnection);
}

DesktopNotificationService::DesktopNotificationService(Settings settings, Listener listener)
    : settings_(std::move(settings)), listener_(std::move(listener)) {
  qDBusRegisterMetaType<NotificationImage>();
  link_->service_ = this;
  connectToBus();
}

DesktopNotificationService::~DesktopNotificationService() {
  {
    const std::lock_guard lock(link_->mutex_);
    link_->service_ = nullptr;
  }
  connection_.reset();
  if (!connectionName_.isEmpty()) QDBusConnection::disconnectFromBus(connectionName_);
}

// ---- Finding the service

/// Connecting waits for the bus, and may even start one; so a thread of its own does it.
void DesktopNotificationService::connectToBus() {
  static std::atomic<int> connections = 0;
  connecting_ = true;
  const QString name = QStringLiteral("kifo-notifications-%1").arg(++connections);
  std::thread([name, address = settings_.busAddress, link = link_] {
    const auto made = address.isEmpty()
                          ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                          : QDBusConnection::connectToBus(address, name);
    const bool taken =
        link->post([made](DesktopNotificationService& service) { service.connected(made); });
    if (!taken) QDBusConnection::disconnectFromBus(name);
  }).detach();
}

void DesktopNotificationService::connected(const QDBusConnection& connection) {
  connecting_ = false;
  lastLook_.start();
  if (!connection.isConnected()) {
    QDBusConnection::disconnectFromBus(connection.name());
    setStatus(denied);
    return;
  }
  connection_ = connection;
  connectionName_ = connection.name();
  subscribe();
  ask();
}

/// The signals are taken from anybody and sifted by their sender: naming the service here would
/// have Qt look up its owner and wait for the answer.
void DesktopNotificationService::subscribe() {
  QDBusConnection& bus = *connection_;
  const auto hear = [&](const char* signal, const char* slot) {
    bus.connect(QString(), PATH, SERVICE, QLatin1String(signal), this, slot);
  };
  hear("ActionInvoked", SLOT(onActionInvoked(QDBusMessage)));
  hear("ActivationToken", SLOT(onActivationToken(QDBusMessage)));
  hear("NotificationClosed", SLOT(onNotificationClosed(QDBusMessage)));
  bus.connect(QString(), PATH, PROPERTIES, QStringLiteral("PropertiesChanged"), this,
              SLOT(onPropertiesChanged(QDBusMessage)));
  bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus"), BUS,
              QStringLiteral("NameOwnerChanged"), {SERVICE}, QString(), this,
              SLOT(onNameOwnerChanged(QDBusMessage)));
  bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
              QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
              SLOT(onDisconnected()));
}

void DesktopNotificationService::refresh() {
  if (ready_) {
    readInhibited();
  } else if (!lastLook_.isValid() || lastLook_.elapsed() >= settings_.retryInterval) {
    look();
  }
}

void DesktopNotificationService::look() {
  if (connection_) {
    ask();
  } else if (!connecting_) {
    connectToBus();
  }
}

/// For what waits: without a further event nobody else would look again.
void DesktopNotificationService::lookLater() {
  if (lookingLater_) return;
  lookingLater_ = true;
  QTimer::singleShot(settings_.retryInterval, this, [this] {
    lookingLater_ = false;
    if (!ready_ && waiting() > 0) look();
  });
}

void DesktopNotificationService::ask() {
  if (asking_ || ready_) return;
  asking_ = true;
  lastLook_.start();
  call(methodCall(SERVICE, SERVICE, QStringLiteral("GetCapabilities")),
       [this](const QDBusMessage& reply) { answered(reply); });
}

/// An error that is the service's own, such as an unknown method, is an answer too: it is there.
void DesktopNotificationService::answered(const QDBusMessage& reply) {
  asking_ = false;
  if (saysNoService(reply)) {
    setStatus(denied);
    return;
  }
  if (saysServiceWent(reply)) {
    serviceWent();
    return;
  }
  ready_ = true;
  owner_ = reply.service();
  capabilities_ = isError(reply)
                      ? DesktopCapabilities()
                      : DesktopCapabilities::of(reply.arguments().value(0).toStringList());
  readInhibited();
  drain();
}

/// Services that know no "Inhibited" answer with an error: they do not inhibit.
void DesktopNotificationService::readInhibited() {
  if (readingInhibited_) return;
  readingInhibited_ = true;
  call(
      methodCall(owner_, PROPERTIES, QStringLiteral("Get"), {SERVICE, QStringLiteral("Inhibited")}),
      [this](const QDBusMessage& reply) {
        readingInhibited_ = false;
        if (saysServiceWent(reply) || saysNoService(reply)) return;
        const auto value = reply.arguments().value(0).value<QDBusVariant>().variant();
        setStatus(!isError(reply) && value.toBool() ? denied : authorized);
      });
}

void DesktopNotificationService::serviceWent() {
  ++generation_;
  owner_.clear();
  asking_ = ready_ = readingInhibited_ = false;
  setStatus(notDetermined);
  putBack();
  if (waiting() > 0) lookLater();
}

void DesktopNotificationService::setStatus(int status) {
  listener_.statusChanged(status);
}

void DesktopNotificationService::onNameOwnerChanged(const QDBusMessage& signal) {
  if (signal.service() != BUS) return;
  const QString owner = signal.arguments().value(2).toString();
  if (!owner.isEmpty() && owner == owner_) return;
  serviceWent();
  if (!owner.isEmpty()) ask();
}

void DesktopNotificationService::onDisconnected() {
  if (!connection_) return;
  connection_.reset();
  QDBusConnection::disconnectFromBus(std::exchange(connectionName_, {}));
  serviceWent();
}

void DesktopNotificationService::onPropertiesChanged(const QDBusMessage& signal) {
  const bool ours = !owner_.isEmpty() && signal.service() == owner_ &&
                    signal.arguments().value(0).toString() == SERVICE;
  if (ours) readInhibited();
}

// ---- Showing

void DesktopNotificationService::show(DesktopNotification notification) {
  std::erase_if(queue_, [&](const DesktopNotification& waits) {
    return waits.identifier == notification.identifier;
  });
  queue_.push_back(std::move(notification));
  dropOldest();
  if (!ready_) look();
  drain();
}

void DesktopNotificationService::close(const std::string& identifier) {
  std::erase_if(queue_,
                [&](const DesktopNotification& waits) { return waits.identifier == identifier; });
  if (underWay_ && underWay_->notification.identifier == identifier) underWay_->close = true;
  if (const auto id = ledger_.idOf(identifier)) closeOnDesktop(*id);
}

void DesktopNotificationService::drain() {
  if (!ready_ || underWay_ || queue_.empty()) return;
  underWay_ = UnderWay{std::move(queue_.front()), {}};
  queue_.pop_front();
  ++underWay_->notification.attempts;
  underWay_->picture.path = imagePathOf(underWay_->notification);
  if (!underWay_->picture.path.isEmpty() && (settings_.imagesAsData || isSandboxed())) {
    sendWithPixels();
  } else {
    send();
  }
}

void DesktopNotificationService::send() {
  const auto replaces = ledger_.idOf(underWay_->notification.identifier).value_or(0);
  call(methodCall(owner_, SERVICE, QStringLiteral("Notify"),
                  notifyArguments(underWay_->notification, replaces, capabilities_,
                                  settings_.application, underWay_->picture)),
       [this](const QDBusMessage& reply) { isError(reply) ? refused(reply) : sent(reply); });
}

void DesktopNotificationService::sendWithPixels() {
  ImageDecoders::start([link = link_, path = underWay_->picture.path, generation = generation_] {
    link->post([generation, pixels = NotificationImage::read(path)](auto& service) {
      if (generation != service.generation_) return;
      service.underWay_->picture = {{}, pixels};
      service.send();
    });
  });
}

void DesktopNotificationService::sent(const QDBusMessage& reply) {
  const Id id = reply.arguments().value(0).toUInt();
  const bool close = underWay_->close;
  ledger_.shown(id, std::move(underWay_->notification));
  underWay_.reset();
  if (close) closeOnDesktop(id);
  const QPointer<DesktopNotificationService> alive(this);
  replayEarlySignals();
  if (alive) drain();
}

/// A service that does not take the picture as a file gets its pixels, and then none.
void DesktopNotificationService::refused(const QDBusMessage& reply) {
  if (saysServiceWent(reply) || saysNoService(reply)) {
    serviceWent();
  } else if (!underWay_->picture.path.isEmpty()) {
    sendWithPixels();
  } else if (underWay_->picture.data) {
    underWay_->picture = {};
    send();
  } else {
    print("the desktop refused a notification: " + reply.errorMessage().toStdString());
    underWay_.reset();
    early_.clear();
    drain();
  }
}

/// What the service that went had not answered or still showed waits again, before what came later.
void DesktopNotificationService::putBack() {
  early_.clear();
  auto again = ledger_.takeOpen();
  if (underWay_ && !underWay_->close) again.push_back(std::move(underWay_->notification));
  underWay_.reset();
  std::erase_if(again, [this](const DesktopNotification& notification) {
    const bool superseded = std::ranges::any_of(queue_, [&](const DesktopNotification& waits) {
      return waits.identifier == notification.identifier;
    });
    const bool givenUp = notification.attempts >= MOST_ATTEMPTS;
    if (givenUp) print("a notification was given up: every service went away over it");
    return superseded || givenUp;
  });
  queue_.insert(queue_.begin(), std::make_move_iterator(again.begin()),
                std::make_move_iterator(again.end()));
  dropOldest();
}

void DesktopNotificationService::dropOldest() {
  while (queue_.size() > settings_.capacity) {
    print("too many notifications wait for the desktop: the oldest was dropped");
    queue_.pop_front();
  }
}

/// Calls go to the service that gave the number: under the name alone they might reach the next
/// one.
void DesktopNotificationService::closeOnDesktop(Id id) {
  ledger_.closed(id, UNDEFINED_REASON);
  call(methodCall(owner_, SERVICE, QStringLiteral("CloseNotification"), {id}),
       [](const QDBusMessage&) {});
}

// ---- What the user did

std::optional<Id> DesktopNotificationService::subjectOf(const QDBusMessage& signal) const {
  bool isNumber = false;
  const Id id = signal.arguments().value(0).toUInt(&isNumber);
  const bool ours = isNumber && !owner_.isEmpty() && signal.service() == owner_;
  return ours ? std::optional(id) : std::nullopt;
}

void DesktopNotificationService::take(Id id, Signal signal) {
  if (ledger_.knows(id)) {
    signal();
  } else if (underWay_ && early_.size() < MOST_EARLY_SIGNALS) {
    early_.push_back(std::move(signal));
  }
}

void DesktopNotificationService::replayEarlySignals() {
  const QPointer<DesktopNotificationService> alive(this);
  for (const Signal& signal : std::exchange(early_, {})) {
    if (alive) signal();
  }
}

void DesktopNotificationService::onActivationToken(const QDBusMessage& signal) {
  const auto id = subjectOf(signal);
  if (!id) return;
  take(*id, [this, id = *id, token = signal.arguments().value(1).toString().toStdString()] {
    ledger_.activationToken(id, token);
  });
}

/// Not every service takes a notification away once an action was chosen; this one is done with.
void DesktopNotificationService::onActionInvoked(const QDBusMessage& signal) {
  const auto id = subjectOf(signal);
  if (!id) return;
  take(*id, [this, id = *id, key = signal.arguments().value(1).toString().toStdString()] {
    const auto click = ledger_.actionInvoked(id, key);
    if (!click) return;
    closeOnDesktop(id);
    const auto clicked = listener_.clicked;  // which may end this object
    clicked(*click);
  });
}

void DesktopNotificationService::onNotificationClosed(const QDBusMessage& signal) {
  const auto id = subjectOf(signal);
  if (!id) return;
  bool isNumber = false;
  const quint32 given = signal.arguments().value(1).toUInt(&isNumber);
  take(*id, [this, id = *id, reason = isNumber ? given : UNDEFINED_REASON] {
    const auto entry = ledger_.closed(id, reason);
    if (!entry) return;
    QTimer::singleShot(settings_.dismissalGrace, this, [this, entry] {
      if (const auto content = DesktopNotificationLedger::settle(*entry)) {
        listener_.dismissed(*content);
      }
    });
  });
}

void DesktopNotificationService::call(const QDBusMessage& message, Reply done) {
  if (!connection_) return;
  auto* watcher = new QDBusPendingCallWatcher(connection_->asyncCall(message, FOREVER), this);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this,
                   [this, watcher, generation = generation_, done = std::move(done)] {
                     watcher->deleteLater();
                     if (generation == generation_) done(watcher->reply());
                   });
}

}  // namespace kifo
