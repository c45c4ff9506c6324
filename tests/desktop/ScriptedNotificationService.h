#pragma once

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>
#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

#include "tests/support/Common.h"

namespace kifo {

/// org.freedesktop.Notifications with the answers and faults that a test chooses.
class ScriptedNotificationService : public QDBusVirtualObject {
 public:
  struct Shown {
    uint id;
    uint replaces;
    QString application;
    QString summary;
    QString body;
    QStringList actions;
    QVariantMap hints;
  };

  /// On the bus at once, but without the name until `appear`.
  explicit ScriptedNotificationService(const QString& address) : connection_(connectTo(address)) {
    connection_.registerVirtualObject(kPath, this);
  }
  /// A call that is queued must not run after this: Qt would answer it with a half-destroyed
  /// object.
  ~ScriptedNotificationService() override {
    connection_.unregisterObject(kPath);
    QCoreApplication::removePostedEvents(this);
    vanish();
  }

  /// Takes the name, or queues for it: an earlier service may still own it, since Qt closes a
  /// connection on another thread.
  void appear() {
    connection_.interface()->registerService(kName, QDBusConnectionInterface::QueueService);
  }
  /// Gives the name up and stays on the bus.
  void releaseName() { connection_.interface()->unregisterService(kName); }
  /// Disconnects from the bus; open calls get no answer.
  void vanish() {
    if (!connection_.isConnected()) return;
    kept_.clear();
    const QString name = connection_.name();
    connection_ = QDBusConnection(QStringLiteral("none"));
    QDBusConnection::disconnectFromBus(name);
  }
  /// Answers what came while it was silent, in order, and everything from now on.
  void speak() {
    silent = false;
    for (const auto& message : std::exchange(kept_, {})) answer(message);
  }

  void invokeAction(uint id, const QString& key) { emitSignal("ActionInvoked", {id, key}); }
  void giveToken(uint id, const QString& token) { emitSignal("ActivationToken", {id, token}); }
  void close(uint id, uint reason) { emitSignal("NotificationClosed", {id, reason}); }
  void emitSignal(const QString& name, const QVariantList& arguments) {
    auto signal = QDBusMessage::createSignal(kPath, kName, name);
    signal.setArguments(arguments);
    connection_.send(signal);
  }

  QStringList capabilities = {QStringLiteral("actions"), QStringLiteral("body")};
  std::optional<bool> inhibited;  ///< None: the service does not know the property.
  bool silent = false;            ///< Calls are kept unanswered.
  /// Answers every call in place of the service; none leaves it unanswered for ever.
  std::function<std::optional<QDBusMessage>(const QDBusMessage&)> reply;
  /// Refuses a Notify when it gives an error's name.
  std::function<QString(const Shown&)> refuse;
  /// Runs before a Notify is answered.
  std::function<void(const Shown&)> beforeAnswer;

  [[nodiscard]] const std::vector<Shown>& shown() const { return shown_; }
  [[nodiscard]] const std::vector<uint>& closeCalls() const { return closeCalls_; }
  /// How many calls of `method` are kept unanswered.
  [[nodiscard]] qsizetype unanswered(const char* method = "Notify") const {
    return std::ranges::count(kept_, QLatin1String(method), &QDBusMessage::member);
  }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
    message.setDelayedReply(true);
    if (silent) {
      kept_.push_back(message);
    } else {
      answer(message);
    }
    return true;
  }

 private:
  static inline const QString kName = QStringLiteral("org.freedesktop.Notifications");
  static inline const QString kPath = QStringLiteral("/org/freedesktop/Notifications");

  static QDBusConnection connectTo(const QString& address) {
    static int count = 0;
    return QDBusConnection::connectToBus(address, QStringLiteral("scripted-%1").arg(++count));
  }

  void answer(const QDBusMessage& message) {
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
      connection_.send(
          message.createErrorReply("org.freedesktop.DBus.Error.UnknownProperty", method));
    }
  }
  void notify(const QDBusMessage& message) {
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

  QDBusConnection connection_;
  std::vector<QDBusMessage> kept_;
  std::vector<Shown> shown_;
  std::vector<uint> closeCalls_;
  uint lastId_ = 0;
};

}  // namespace kifo
