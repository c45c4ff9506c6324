// kifo-kiosk: a self-order kiosk in Qt Quick with campaigns in its scene. With a display it waits
// for a customer; without one it visits itself with touch and keys, keeps a picture of each state,
// and checks what the server received.
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <cstdio>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "apps/demo/HasDisplay.h"
#include "apps/demo/kiosk/KioskTour.h"
#include "apps/demo/shop/ShopServer.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/qt/QuickPopupPresenter.h"

namespace {

using namespace kifo;

struct SilentConsole final : ConsoleSink {
  void write(std::string) override {}
};

void installPlatform(const testing::LocalServer& server, const QString& home, bool isVerbose) {
  LinuxPlatformOptions options;
  options.documentsDirectory = home.toStdString();
  options.applicationIdentifier = "com.example.juniper";
  options.reachabilityTargets = {server.apiUri(), server.listenerUri()};
  Platform platform = withQuick(makeLinuxPlatform(options));
  if (!isVerbose) platform.console = std::make_shared<SilentConsole>();
  Platform::install(std::move(platform));
}

QVariantMap configurationFor(const testing::LocalServer& server) {
  return {{"bundle", "com.example.juniper"},
          {"apiUri", QString::fromStdString(server.apiUri())},
          {"listenerUri", QString::fromStdString(server.listenerUri())},
          {"authorization", "juniper-token"},
          {"applicationName", "juniper"},
          {"resendsWhenServerReturns", true}};
}

/// How the kiosk was asked to run.
struct Options {
  bool runsTour = false;
  bool isVerbose = false;
  QString output;
};

Options optionsOf(const QGuiApplication& application) {
  QCommandLineParser parser;
  const QCommandLineOption tour("tour", "Run the tour, also on a display.");
  const QCommandLineOption output("output", "Where the tour's pictures go.", "folder",
                                  "kiosk-pictures");
  const QCommandLineOption verbose("verbose", "Show the SDK's console lines.");
  parser.addHelpOption();
  parser.addOptions({tour, output, verbose});
  parser.process(application);
  return {.runsTour = parser.isSet(tour) || !demo::hasDisplay(),
          .isVerbose = parser.isSet(verbose),
          .output = parser.value(output)};
}

int run(const QGuiApplication& application, const Options& options) {
  const QTemporaryDir home;
  shop::ShopServer server;
  if (!home.isValid() || !server.start()) {
    std::fprintf(stderr, "kifo-kiosk: no folder or no port to be had\n");
    return 1;
  }
  installPlatform(server.server(), home.path(), options.isVerbose);
  QQmlApplicationEngine engine;
  engine.setInitialProperties({{"configuration", configurationFor(server.server())}});
  engine.load(QUrl(QStringLiteral("qrc:/Kiosk/Main.qml")));
  auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
  if (window == nullptr) return 1;
  if (options.runsTour) {
    return kiosk::runTour(*window, server.server(), options.output) ? 0 : 1;
  }
  window->showFullScreen();
  return application.exec();
}

}  // namespace

int main(int argc, char** argv) {
  if (!demo::hasDisplay()) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  }
  QGuiApplication application(argc, argv);
  QGuiApplication::setApplicationName(QStringLiteral("kifo-kiosk"));
  const int status = run(application, optionsOf(application));
  Kifo::shutdown();
  return status;
}
