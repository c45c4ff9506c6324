#include "apps/demo/DemoHost.h"

#include <QCommandLineParser>
#include <memory>

#include "platform/linux/LinuxPlatform.h"

namespace kifo::demo {
namespace {

struct SilentConsole final : ConsoleSink {
  void write(std::string) override {}
};

}  // namespace

bool hasDisplay() {
  if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    return qgetenv("QT_QPA_PLATFORM") != "offscreen" && qgetenv("QT_QPA_PLATFORM") != "minimal";
  }
  return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

Options optionsOf(const QCoreApplication& application, const QString& pictures) {
  QCommandLineParser parser;
  const QCommandLineOption tour("tour", "Run the tour, also on a display.");
  const QCommandLineOption output("output", "Where the tour's pictures go.", "folder", pictures);
  const QCommandLineOption verbose("verbose", "Show the SDK's console lines.");
  parser.addHelpOption();
  parser.addOptions({tour, output, verbose});
  parser.process(application);
  return {.runsTour = parser.isSet(tour) || !hasDisplay(),
          .isVerbose = parser.isSet(verbose),
          .output = parser.value(output)};
}

Platform platformFor(const testing::LocalServer& server, const std::string& identifier,
                     const QString& home, bool isVerbose) {
  LinuxPlatformOptions options;
  options.documentsDirectory = home.toStdString();
  options.applicationIdentifier = identifier;
  options.reachabilityTargets = {server.apiUri(), server.listenerUri()};
  Platform platform = makeLinuxPlatform(options);
  if (!isVerbose) platform.console = std::make_shared<SilentConsole>();
  return platform;
}

}  // namespace kifo::demo
