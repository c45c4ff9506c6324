#include "apps/demo/shop/tour/PushTourDesktop.h"

#include <signal.h>
#include <sys/prctl.h>

#include <QDBusArgument>
#include <QFile>

namespace kifo::shop {
namespace {

constexpr int kPatience = 10000;  // milliseconds
const auto kName = QStringLiteral("org.freedesktop.Notifications");
const auto kPath = QStringLiteral("/org/freedesktop/Notifications");
const auto kConnection = QStringLiteral("nook-tour-desktop");

constexpr auto kConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

PushTourDesktop::PushTourDesktop() : connection_(QString()) {
  startBus();
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
  if (bus_.state() == QProcess::NotRunning) return;
  bus_.terminate();
  if (!bus_.waitForFinished(kPatience)) bus_.kill();
}

bool PushTourDesktop::writeConfiguration(const QString& path) const {
  QFile file(path);
  if (!folder_.isValid() || !file.open(QIODevice::WriteOnly)) return false;
  file.write(QString::fromLatin1(kConfiguration).arg(folder_.path()).toUtf8());
  return true;
}

void PushTourDesktop::startBus() {
  const QString configuration = folder_.filePath(QStringLiteral("bus.conf"));
  if (!writeConfiguration(configuration)) return;
  // It must not outlive a tour that crashes.
  bus_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
  bus_.start(QStringLiteral("dbus-daemon"),
             {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
              QStringLiteral("--config-file=") + configuration});
  while (!bus_.canReadLine()) {
    if (!bus_.waitForReadyRead(kPatience)) return;
  }
  address_ = QString::fromUtf8(bus_.readLine()).trimmed();
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
