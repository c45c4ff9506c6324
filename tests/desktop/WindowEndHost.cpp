// A host with a popup open, or without one, for window_end.sh, which ends it in every way there is.
//   WindowEndHost widget|scene popup|plain     prints "ready" once everything is on the screen
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QApplication>
#include <QRasterWindow>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <string_view>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "platform/qt/QtPlatform.h"
#include "tests/support/QtScreens.h"

namespace {

int signalPipe[2];

/// Quits on SIGTERM, as hosts do: the handler writes a byte, and the event loop reads it.
void quitOnTerm() {
  if (pipe(signalPipe) != 0) return;
  signal(SIGTERM, [](int) { [[maybe_unused]] const auto written = write(signalPipe[1], "t", 1); });
  auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, qApp);
  QObject::connect(notifier, &QSocketNotifier::activated, qApp, &QApplication::quit);
}

void present(const std::shared_ptr<kifo::ViewController>& screen) {
  const auto request = std::make_shared<kifo::PopupRequest>();
  request->preferences.type = "POPUP";
  request->preferences.title = "Sale";
  request->preferences.appCommunicationItem = std::make_shared<kifo::AppCommunicationItem>();
  request->preferences.controller = screen;
  kifo::Platform::current()->popups->present(request);
}

/// The popup, wherever it lies, once it is on the screen.
bool showsPopup() {
  for (const QWidget* widget : QApplication::allWidgets()) {
    if (widget->objectName() == QLatin1String("PopUpWindow") && widget->isVisible()) return true;
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 3) return 2;
  const bool isScene = std::string_view(argv[1]) == "scene";
  const bool hasPopup = std::string_view(argv[2]) == "popup";
  kifo::PopUpOptions options;
  options.reducedMotion = true;
  kifo::Platform::install(kifo::withQt(kifo::Platform::makeDefault(), options));
  quitOnTerm();

  QWidget widget;
  QRasterWindow scene;
  widget.setWindowTitle("Host");
  scene.setTitle("Host");
  const auto widgetScreen = std::make_shared<kifo::testing::WidgetScreen>(&widget);
  const auto sceneScreen = std::make_shared<kifo::testing::WindowScreen>(&scene);
  widget.resize(400, 300);
  scene.resize(400, 300);
  isScene ? scene.show() : widget.show();
  if (hasPopup && isScene) present(sceneScreen);
  if (hasPopup && !isScene) present(widgetScreen);

  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &look, [&] {
    const QWindow* window = isScene ? &scene : widget.windowHandle();
    if (!window->isExposed() || showsPopup() != hasPopup) return;
    look.stop();
    std::puts("ready");
    std::fflush(stdout);
  });
  look.start(20);
  const int status = QApplication::exec();
  std::puts("ended");
  return status;
}
