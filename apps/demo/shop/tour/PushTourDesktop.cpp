#include "apps/demo/shop/tour/PushTourDesktop.h"

#include <QDBusArgument>

namespace kifo::shop {
namespace {

const auto kName = QStringLiteral("org.freedesktop.Notifications");
const auto kPath = QStringLiteral("/org/freedesktop/Notifications");
const auto kConnection = QStringLiteral("nook-tour-desktop");

}  // namespace

PushTourDesktop::PushTourDesktop()
    : address_(QString::fromStdString(bus_.address())), connection_(QString()) {
  if (address_.isEmpty()) return;
  connection_ = QDBusConnection::connectToBus(address_, kConnection);
  if (!connection_.isConnected() || !connection_.registerVirtualObject(kPath, this) ||
      !connection_.registerService(kName)) {
    address_.clear();
  }
}

PushTourDesktop::~PushTourDesktop() {
  connection_ = QDBusConnection(QString());
  QDBusConnection::disconnectFromBus(kConnection);
}

void PushTourDesktop::invoke(const QString& key) {
  auto signal = QDBusMessage::createSignal(kPath, kName, QStringLiteral("ActionInvoked"));
  signal.setArguments({static_cast<uint>(shown_.size()), key});
  connection_.send(signal);
}

bool PushTourDesktop::handleMessage(const QDBusMessage& message,
                                    const QDBusConnection& connection) {
  return connection.send(answerTo(message));
}

QDBusMessage PushTourDesktop::answerTo(const QDBusMessage& message) {
  if (message.member() == QLatin1String("Notify")) return notify(message);
  if (message.member() == QLatin1String("GetCapabilities")) {
    return message.createReply(QStringList{QStringLiteral("actions"), QStringLiteral("body")});
  }
  if (message.member() == QLatin1String("CloseNotification")) return message.createReply();
  return message.createErrorReply(QDBusError::UnknownMethod, message.member());
}

QDBusMessage PushTourDesktop::notify(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  shown_.push_back({arguments.value(3).toString(), arguments.value(5).toStringList(),
                    qdbus_cast<QVariantMap>(arguments.value(6))});
  return message.createReply(static_cast<uint>(shown_.size()));
}

}  // namespace kifo::shop
