#include "tests/desktop/ScriptedNotificationService.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <algorithm>

namespace kifo {
namespace {

const auto NAME = QStringLiteral("org.freedesktop.Notifications");
const auto PATH = QStringLiteral("/org/freedesktop/Notifications");
const auto UNKNOWN_PROPERTY = QStringLiteral("org.freedesktop.DBus.Error.UnknownProperty");

QDBusConnection connectTo(const QString& address) {
  static int count = 0;
  return QDBusConnection::connectToBus(address, QStringLiteral("scripted-%1").arg(++count));
}

}  // namespace

ScriptedNotificationService::ScriptedNotificationService(const QString& address)
    : connection_(connectTo(address)) {
  connection_.registerVirtualObject(PATH, this);
}

/// A call that is queued must not run after this: Qt would answer it with a half-destroyed object.
ScriptedNotificationService::~ScriptedNotificationService() {
  connection_.unregisterObject(PATH);
  QCoreApplication::removePostedEvents(this);
  vanish();
}

/// An earlier service may still own the name: Qt closes a connection on another thread.
void ScriptedNotificationService::appear() {
  connection_.interface()->registerService(NAME, QDBusConnectionInterface::QueueService);
}

void ScriptedNotificationService::releaseName() {
  connection_.interface()->unregisterService(NAME);
}

void ScriptedNotificationService::vanish() {
  if (!connection_.isConnected()) return;
  kept_.clear();
  const QString name = connection_.name();
  connection_ = QDBusConnection(QStringLiteral("none"));
  QDBusConnection::disconnectFromBus(name);
}

void ScriptedNotificationService::speak() {
  silent = false;
  for (const auto& message : std::exchange(kept_, {})) answer(message);
}

qsizetype ScriptedNotificationService::unanswered(const char* method) const {
  return std::ranges::count(kept_, QLatin1String(method), &QDBusMessage::member);
}

void ScriptedNotificationService::invokeAction(uint id, const QString& key) {
  emitSignal(QStringLiteral("ActionInvoked"), {id, key});
}

void ScriptedNotificationService::giveToken(uint id, const QString& token) {
  emitSignal(QStringLiteral("ActivationToken"), {id, token});
}

void ScriptedNotificationService::close(uint id, uint reason) {
  emitSignal(QStringLiteral("NotificationClosed"), {id, reason});
}

void ScriptedNotificationService::emitSignal(const QString& name, const QVariantList& arguments) {
  auto signal = QDBusMessage::createSignal(PATH, NAME, name);
  signal.setArguments(arguments);
  connection_.send(signal);
}

bool ScriptedNotificationService::handleMessage(const QDBusMessage& message,
                                                const QDBusConnection&) {
  message.setDelayedReply(true);
  if (silent) {
    kept_.push_back(message);
  } else {
    answer(message);
  }
  return true;
}

void ScriptedNotificationService::answer(const QDBusMessage& message) {
  if (reply) {
    if (const auto given = reply(message)) connection_.send(*given);
    return;
  }
  const QString method = message.member();
  if (method == QLatin1String("Notify")) {
    notify(message);
  } else if (method == QLatin1String("GetCapabilities")) {
    connection_.send(message.createReply(capabilities));
  } else if (method == QLatin1String("CloseNotification")) {
    closeCalls_.push_back(message.arguments().value(0).toUInt());
    connection_.send(message.createReply());
  } else if (method == QLatin1String("Get") && inhibited) {
    connection_.send(message.createReply(QVariant::fromValue(QDBusVariant(*inhibited))));
  } else {
    connection_.send(message.createErrorReply(UNKNOWN_PROPERTY, method));
  }
}

void ScriptedNotificationService::notify(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  const uint replaces = arguments.value(1).toUInt();
  const Shown shown{replaces != 0 ? replaces : lastId_ + 1,
                    replaces,
                    arguments.value(0).toString(),
                    arguments.value(3).toString(),
                    arguments.value(4).toString(),
                    arguments.value(5).toStringList(),
                    qdbus_cast<QVariantMap>(arguments.value(6))};
  shown_.push_back(shown);
  if (const QString error = refuse ? refuse(shown) : QString(); !error.isEmpty()) {
    connection_.send(message.createErrorReply(error, QStringLiteral("refused")));
    return;
  }
  lastId_ = std::max(lastId_, shown.id);
  if (beforeAnswer) beforeAnswer(shown);
  connection_.send(message.createReply(shown.id));
}

}  // namespace kifo
