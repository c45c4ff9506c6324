#include "platform/qt/popups/QuickPopupRouter.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickRenderControl>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "platform/qt/QtWindowProvider.h"
#include "platform/qt/QuickScreenProvider.h"

namespace kifo {
namespace {

/// The active scene, otherwise the only one that is seen.
QQuickWindow* activeScene() {
  if (auto* active = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow())) return active;
  QQuickWindow* seen = nullptr;
  for (QWindow* window : QGuiApplication::topLevelWindows()) {
    auto* scene = qobject_cast<QQuickWindow*>(window);
    if (!scene || !scene->isVisible()) continue;
    if (seen) return nullptr;
    seen = scene;
  }
  return seen;
}

/// The screen's scene; null when it is in none.
QQuickWindow* sceneOf(const ViewController* screen) {
  if (const auto* provider = dynamic_cast<const QuickScreenProvider*>(screen)) {
    const QQuickItem* item = provider->item();
    return item != nullptr ? item->window() : nullptr;
  }
  if (dynamic_cast<const QtWidgetProvider*>(screen)) return nullptr;
  if (const auto* provider = dynamic_cast<const QtWindowProvider*>(screen)) {
    return qobject_cast<QQuickWindow*>(provider->window());
  }
  return activeScene();
}

}  // namespace

QuickPopupQueue::QuickPopupQueue(QQuickWindow* scene, const PopUpOptions& options)
    : WindowPopups(LOG_TAG, options), scene_(scene) {
  // One that is rendered into a widget becomes visible with the widget's window.
  watched_ = systemWindow();
  if (!watched_) watched_ = scene;
  watched_->installEventFilter(this);
  // Without a window manager, restoring a minimised window comes with no event.
  connect(watched_, &QWindow::visibilityChanged, this, &QuickPopupQueue::showNext,
          Qt::QueuedConnection);
}

QWindow* QuickPopupQueue::systemWindow() const {
  if (!scene_) return nullptr;
  QWindow* rendered = QQuickRenderControl::renderWindowFor(scene_);
  QWindow* window = rendered ? rendered : scene_.data();
  while (QWindow* parent = window->parent()) window = parent;
  return window;
}

bool QuickPopupQueue::isReady() const {
  const QWindow* window = systemWindow();
  return window && window->isVisible() && window->isExposed() &&
         window->visibility() != QWindow::Minimized;
}

QObject* QuickPopupQueue::show(const Request& request, PopUpOptions options) {
  auto* popup = new QuickPopup(request, std::move(options));
  popup->present(*scene_);
  return popup;
}

bool QuickPopupQueue::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Expose) {
    QMetaObject::invokeMethod(this, &QuickPopupQueue::showNext, Qt::QueuedConnection);
  }
  return WindowPopups::eventFilter(watched, event);
}

QuickPopupRouter::QuickPopupRouter(PopUpOptions options, std::shared_ptr<PopupPresenter> widgets,
                                   QObject* parent)
    : PopupRouter(parent), options_(std::move(options)), widgets_(std::move(widgets)) {}

void QuickPopupRouter::accept(const std::shared_ptr<const PopupRequest>& request) {
  const auto screen = request->preferences.controller.lock();
  if (!screen && isScreenGone(*request)) {
    return rules::sayNotShown(QuickPopupQueue::LOG_TAG, *request, "its screen is gone");
  }
  if (QQuickWindow* scene = sceneOf(screen.get())) return queueOf(scene).enqueue(request);
  if (widgets_) return widgets_->present(request);
  rules::sayNotShown(QuickPopupQueue::LOG_TAG, *request,
                     screen ? "the screen " + screen->className() + " is in no Qt Quick window"
                            : "no Qt Quick window is active");
}

std::unique_ptr<WindowPopups> QuickPopupRouter::makeQueue(QObject* window) {
  return std::make_unique<QuickPopupQueue>(qobject_cast<QQuickWindow*>(window), options_);
}

}  // namespace kifo
