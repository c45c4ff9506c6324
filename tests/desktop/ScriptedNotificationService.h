#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>
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
  explicit ScriptedNotificationService(const QString& address);
  ~ScriptedNotificationService() override;

  /// Takes the name, or queues for it.
  void appear();
  /// Gives the name up and stays on the bus.
  void releaseName();
  /// Disconnects from the bus; open calls get no answer.
  void vanish();
  /// Answers what came while it was silent, in order, and everything from now on.
  void speak();

  void invokeAction(uint id, const QString& key);
  void giveToken(uint id, const QString& token);
  void close(uint id, uint reason);
  void emitSignal(const QString& name, const QVariantList& arguments);

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
  [[nodiscard]] qsizetype unanswered(const char* method = "Notify") const;

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  void answer(const QDBusMessage& message);
  void notify(const QDBusMessage& message);

  QDBusConnection connection_;
  std::vector<QDBusMessage> kept_;
  std::vector<Shown> shown_;
  std::vector<uint> closeCalls_;
  uint lastId_ = 0;
};

}  // namespace kifo
