#include "platform/qt/QtPopupRouter.h"

#include <QGuiApplication>
#include <QStringList>
#include <QWidget>
#include <QWindow>
#include <utility>

#include "platform/qt/QtPopupQueue.h"
#include "platform/qt/QtWindowProvider.h"

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
    : QObject(parent),
      options_(std::move(options)),
      link_(std::make_shared<UiLink<QtPopupRouter>>(this)) {}

QtPopupRouter::~QtPopupRouter() {
  link_->close();
}

void QtPopupRouter::accept(const std::shared_ptr<const PopupRequest>& request) {
  const auto screen = request->preferences.controller.lock();
  if (!screen) {
    notShown(*request, isScreenGone(*request) ? "its screen is gone" : "no screen was given");
    return;
  }
  QObject* window = windowOf(*screen);
  if (window == nullptr) {
    notShown(*request, "the screen " + screen->className() + " is in no Qt window");
    return;
  }
  if (window->isWindowType() && hasOneWindowOnly()) {
    notShown(*request, "the platform " + QGuiApplication::platformName().toStdString() +
                           " has no second window for a popup over the scene");
    return;
  }
  queueOf(window)->enqueue(request);
}

void QtPopupRouter::notShown(const PopupRequest& request, const std::string& reason) {
  sayNotShown("QtPopupPresenter", request, reason);
}

QtPopupQueue* QtPopupRouter::queueOf(QObject* window) {
  auto& queue = queues_[window];
  if (queue) return queue.get();
  if (auto* widget = qobject_cast<QWidget*>(window)) {
    queue = std::make_unique<QtPopupQueue>(widget, options_);
  } else {
    queue = std::make_unique<QtPopupQueue>(qobject_cast<QWindow*>(window), options_);
  }
  connect(window, &QObject::destroyed, this, [this](QObject* gone) { windowGone(gone); });
  return queue.get();
}

void QtPopupRouter::windowGone(QObject* window) {
  const auto found = queues_.find(window);
  if (found == queues_.end()) return;
  const auto waiting = found->second->takeWaiting();
  queues_.erase(found);
  // A screen may have moved to another window before its own was destroyed. Queued, because the
  // window is still being destroyed.
  for (const auto& request : waiting) {
    QMetaObject::invokeMethod(
        this, [this, request] { accept(request); }, Qt::QueuedConnection);
  }
}

}  // namespace kifo
