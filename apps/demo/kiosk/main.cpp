// kifo-kiosk: a self-order kiosk in Qt Quick with campaigns in its scene. With a display it waits
// for a customer; without one it visits itself with touch and keys, keeps a picture of each state,
// and checks what the server received.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <cstdio>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "apps/demo/DemoHost.h"
#include "apps/demo/kiosk/KioskTour.h"
#include "apps/demo/shop/ShopServer.h"
#include "platform/qt/QuickPopupPresenter.h"

namespace {

using namespace kifo;

QVariantMap configurationFor(const testing::LocalServer& server) {
  return {{"bundle", "com.example.juniper"},
          {"apiUri", QString::fromStdString(server.apiUri())},
          {"listenerUri", QString::fromStdString(server.listenerUri())},
          {"authorization", "juniper-token"},
          {"applicationName", "juniper"},
          {"resendsWhenServerReturns", true}};
}

int run(const QGuiApplication& application, const demo::Options& options) {
  const QTemporaryDir home;
  shop::ShopServer server;
  if (!home.isValid() || !server.start()) {
    std::fprintf(stderr, "kifo-kiosk: no folder or no port to be had\n");
    return 1;
  }
  Platform::install(withQuick(
      demo::platformFor(server.server(), "com.example.juniper", home.path(), options.isVerbose)));
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
  const int status = run(application, demo::optionsOf(application, "kiosk-pictures"));
  Kifo::shutdown();
  return status;
}
