// kifo-shop: a small shop with campaigns. With a display it waits for a user; without one it
// runs a tour, keeps a picture of each state, and checks what the server received.
#include <QApplication>
#include <QTemporaryDir>
#include <cstdio>
#include <memory>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "apps/demo/DemoHost.h"
#include "apps/demo/shop/NotificationPanel.h"
#include "apps/demo/shop/ShopPushes.h"
#include "apps/demo/shop/ShopServer.h"
#include "apps/demo/shop/ShopWindow.h"
#include "apps/demo/shop/tour/PushTourDesktop.h"
#include "apps/demo/shop/tour/Tour.h"
#include "apps/demo/shop/widgets/Theme.h"
#include "platform/qt/QtPlatform.h"

namespace {

using namespace kifo;

void startSdk(const testing::LocalServer& server, std::shared_ptr<NotificationCentre> pushes,
              const QString& home, bool isVerbose) {
  Platform platform = withQt(demo::platformFor(server, "com.example.nook", home, isVerbose));
  if (pushes) platform.notifications = std::move(pushes);
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

/// Null without a bus.
std::unique_ptr<shop::ShopPushes> pushesOn(const QString& bus) {
  return bus.isEmpty() ? nullptr : std::make_unique<shop::ShopPushes>(bus);
}

void addPushes(shop::ShopWindow& window, shop::ShopServer& server, shop::ShopPushes& pushes) {
  QObject::connect(&server, &shop::ShopServer::pushReceived, &pushes, &shop::ShopPushes::deliver);
  const QString address = QString::fromStdString(server.server().uri());
  window.addExtra(shop::ShopWindow::tr("Pushes"), new shop::NotificationPanel(pushes, address));
}

int run(QApplication& application, const demo::Options& options) {
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
  return run(application, demo::optionsOf(application, "shop-pictures"));
}
