#include "platform/qt/popups/QtPopupRouter.h"

#include <QGuiApplication>
#include <QStringList>
#include <QWidget>
#include <QWindow>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "platform/qt/QtWindowProvider.h"
#include "platform/qt/popups/QtPopupQueue.h"

namespace kifo {
namespace {

/// The QWidget or QWindow that a popup covers, or null.
QObject* windowOf(const ViewController& screen) {
  if (const auto* provider = dynamic_cast<const QtWidgetProvider*>(&screen)) {
    const QWidget* widget = provider->widget();
    return widget != nullptr ? widget->window() : nullptr;
  }
  const auto* provider = dynamic_cast<const QtWindowProvider*>(&screen);
  return provider != nullptr ? provider->window() : nullptr;
}

/// Without a window system there is one full-screen window, the host's own. A second one would not
/// be painted, and would end the program where OpenGL draws the first.
bool hasOneWindowOnly() {
  static const QStringList platforms = {QStringLiteral("eglfs"), QStringLiteral("linuxfb"),
                                        QStringLiteral("minimalegl"),
                                        QStringLiteral("vkkhrdisplay"), QStringLiteral("directfb")};
  return platforms.contains(QGuiApplication::platformName());
}

}  // namespace

QtPopupRouter::QtPopupRouter(PopUpOptions options, QObject* parent)
    : PopupRouter(parent), options_(std::move(options)) {}

void QtPopupRouter::accept(const std::shared_ptr<const PopupRequest>& request) {
  const auto notShown = [&request](const std::string& reason) {
    rules::sayNotShown(QtPopupQueue::LOG_TAG, *request, reason);
  };
  const auto screen = request->preferences.controller.lock();
  if (!screen) {
    return notShown(isScreenGone(*request) ? "its screen is gone" : "no screen was given");
  }
  QObject* window = windowOf(*screen);
  if (window == nullptr) {
    return notShown("the screen " + screen->className() + " is in no Qt window");
  }
  if (window->isWindowType() && hasOneWindowOnly()) {
    return notShown("the platform " + QGuiApplication::platformName().toStdString() +
                    " has no second window for a popup over the scene");
  }
  queueOf(window).enqueue(request);
}

std::unique_ptr<WindowPopups> QtPopupRouter::makeQueue(QObject* window) {
  if (auto* widget = qobject_cast<QWidget*>(window)) {
    return std::make_unique<QtPopupQueue>(widget, options_);
  }
  return std::make_unique<QtPopupQueue>(qobject_cast<QWindow*>(window), options_);
}

}  // namespace kifo
