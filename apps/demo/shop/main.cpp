// kifo-shop: a small shop with campaigns. With a display it waits for a user; without one it
// runs a tour, keeps a picture of each state, and checks what the server received.
#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryDir>
#include <cstdio>
#include <memory>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "apps/demo/HasDisplay.h"
#include "apps/demo/shop/NotificationPanel.h"
#include "apps/demo/shop/ShopPushes.h"
#include "apps/demo/shop/ShopServer.h"
#include "apps/demo/shop/ShopWindow.h"
#include "apps/demo/shop/tour/PushTourDesktop.h"
#include "apps/demo/shop/tour/Tour.h"
#include "apps/demo/shop/widgets/Theme.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/qt/QtPlatform.h"

namespace {

using namespace kifo;

struct SilentConsole final : ConsoleSink {
  void write(std::string) override {}
};

void startSdk(const testing::LocalServer& server, std::shared_ptr<NotificationCentre> pushes,
              const QString& home, bool isVerbose) {
  LinuxPlatformOptions options;
  options.documentsDirectory = home.toStdString();
  options.applicationIdentifier = "com.example.nook";
  options.reachabilityTargets = {server.apiUri(), server.listenerUri()};
  Platform platform = withQt(makeLinuxPlatform(options));
  if (pushes) platform.notifications = std::move(pushes);
  if (!isVerbose) platform.console = std::make_shared<SilentConsole>();
  Platform::install(std::move(platform));

  KifoInitConfig configuration;
  configuration.bundle = {"com.example.nook"};
  configuration.apiUri = server.apiUri();
  configuration.listenerUri = server.listenerUri();
  configuration.authorization = "nook-token";
  configuration.applicationName = "nook";
  configuration.actorId = "ada";
  configuration.resendsWhenServerReturns = true;
  Kifo::initialize(configuration);
}

/// How the shop was asked to run.
struct Options {
  bool runsTour = false;
  bool isVerbose = false;
  QString output;
};

Options optionsOf(const QApplication& application) {
  QCommandLineParser parser;
  const QCommandLineOption tour("tour", "Run the tour, also on a display.");
  const QCommandLineOption output("output", "Where the tour's pictures go.", "folder",
                                  "shop-pictures");
  const QCommandLineOption verbose("verbose", "Show the SDK's console lines.");
  parser.addHelpOption();
  parser.addOptions({tour, output, verbose});
  parser.process(application);
  return {.runsTour = parser.isSet(tour) || !demo::hasDisplay(),
          .isVerbose = parser.isSet(verbose),
          .output = parser.value(output)};
}

/// Null without a bus.
std::unique_ptr<shop::ShopPushes> pushesOn(const QString& bus) {
  return bus.isEmpty() ? nullptr : std::make_unique<shop::ShopPushes>(bus);
}

void addPushes(shop::ShopWindow& window, shop::ShopServer& server, shop::ShopPushes& pushes) {
  QObject::connect(&server, &shop::ShopServer::pushReceived, &pushes, &shop::ShopPushes::deliver);
  const QString address = QString::fromStdString(server.server().uri());
  window.addExtra(shop::ShopWindow::tr("Pushes"), new shop::NotificationPanel(pushes, address));
}

int run(QApplication& application, const Options& options) {
  const QTemporaryDir home;
  shop::ShopServer server;
  if (!home.isValid() || !server.start()) {
    std::fprintf(stderr, "kifo-shop: no folder or no port to be had\n");
    return 1;
  }
  // A tour does not use the user's own desktop.
  std::unique_ptr<shop::PushTourDesktop> desktop;
  if (options.runsTour) desktop = std::make_unique<shop::PushTourDesktop>();
  const auto pushes =
      pushesOn(desktop ? desktop->address() : qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
  startSdk(server.server(), pushes ? pushes->centre() : nullptr, home.path(), options.isVerbose);
  int status = 0;
  {
    shop::ShopWindow window;
    QObject::connect(&server, &shop::ShopServer::eventReceived, window.activity(),
                     &shop::ActivityPanel::add);
    if (pushes) addPushes(window, server, *pushes);
    window.show();
    const auto visit = [&] {
      return shop::runTour(window, server.server(), *desktop, options.output) ? 0 : 1;
    };
    status = desktop ? visit() : application.exec();
  }
  Kifo::shutdown();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  if (!demo::hasDisplay()) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("kifo-shop"));
  QApplication::setFont(shop::theme::text(15));
  QApplication::setPalette(shop::theme::palette());
  return run(application, optionsOf(application));
}
