#include "tests/desktop/PrivateBus.h"

#include <signal.h>
#include <sys/prctl.h>

#include <QElapsedTimer>
#include <QFile>

namespace kifo {
namespace {

constexpr int PATIENCE = 20000;  // milliseconds; a loaded machine is slow

constexpr auto CONFIGURATION = R"(<busconfig>
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

void bindToTest(QProcess& process) {
  process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

QString startAndReadLine(QProcess& process, const QString& program, const QStringList& arguments) {
  bindToTest(process);
  process.start(program, arguments);
  QElapsedTimer patience;
  patience.start();
  while (!process.canReadLine() && patience.elapsed() < PATIENCE) {
    if (!process.waitForReadyRead(PATIENCE)) break;
  }
  return QString::fromUtf8(process.readLine()).trimmed();
}

void end(QProcess& process) {
  if (process.state() == QProcess::NotRunning) return;
  process.terminate();
  if (!process.waitForFinished(PATIENCE)) process.kill();
  process.waitForFinished(PATIENCE);
}

PrivateBus::PrivateBus() {
  const QString configuration = directory_.filePath(QStringLiteral("bus.conf"));
  QFile file(configuration);
  if (!file.open(QIODevice::WriteOnly)) {
    problem_ = QStringLiteral("no temporary directory for a message bus");
    return;
  }
  file.write(QString::fromLatin1(CONFIGURATION).arg(directory_.path()).toUtf8());
  file.close();
  address_ = startAndReadLine(daemon_, QStringLiteral("dbus-daemon"),
                              {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                               QStringLiteral("--config-file=") + configuration});
  if (address_.isEmpty()) {
    problem_ = QStringLiteral("no message bus can be had here: ") + daemon_.errorString();
  }
}

PrivateBus::~PrivateBus() { end(daemon_); }

QProcessEnvironment PrivateBus::environment() const {
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address_);
  return environment;
}

}  // namespace kifo
