#include "platform/qt/QuickPopupRouter.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Inspect.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "platform/qt/QtWindowProvider.h"
#include "platform/qt/QuickScreenProvider.h"

namespace kifo {
namespace {

/// Whether a screen was ever set, even if it is destroyed by now.
bool wasSet(const std::weak_ptr<ViewController>& screen) {
  const std::weak_ptr<ViewController> never;
  return screen.owner_before(never) || never.owner_before(screen);
}

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

QQuickWindow* windowOf(const ViewController* screen) {
  if (const auto* provider = dynamic_cast<const QuickScreenProvider*>(screen)) {
    const QQuickItem* item = provider->item();
    return item != nullptr ? item->window() : nullptr;
  }
  if (const auto* provider = dynamic_cast<const QtWindowProvider*>(screen)) {
    return qobject_cast<QQuickWindow*>(provider->window());
  }
  return activeScene();
}

}  // namespace

QuickPopupRouter::QuickPopupRouter(PopUpOptions options, QObject* parent)
    : QObject(parent),
      options_(std::move(options)),
      link_(std::make_shared<UiLink<QuickPopupRouter>>(this)) {}

QuickPopupRouter::~QuickPopupRouter() {
  link_->close();
}

void QuickPopupRouter::notShown(const PopupRequest& request, const std::string& reason) {
  Console::print(logTag("QuickPopupPresenter"), "the popup is not shown: " + reason);
  const auto& item = request.preferences.appCommunicationItem;
  KIFO_INSPECT("popup", {{"uuid", item ? item->uuid.value_or("") : ""},
                         {"outcome", "not shown"},
                         {"reason", reason}});
}

void QuickPopupRouter::accept(const Request& request) {
  const std::weak_ptr<ViewController>& controller = request->preferences.controller;
  const auto screen = controller.lock();
  if (!screen && wasSet(controller)) return notShown(*request, "its screen is gone");
  QQuickWindow* window = windowOf(screen.get());
  if (window == nullptr) return notShown(*request, "there is no Qt Quick window for it");
  Queue& queue = queues_[window];
  if (!queue.window) {
    queue.window = window;
    connect(window, &QObject::destroyed, this, &QuickPopupRouter::windowGone);
    connect(window, &QQuickWindow::sceneGraphInitialized, this,
            [this, window] { showNext(window); });
  }
  queue.waiting.push_back(request);
  showNext(window);
}

void QuickPopupRouter::showNext(QQuickWindow* window) {
  const auto found = queues_.find(window);
  if (found == queues_.end()) return;
  Queue& queue = found->second;
  while (queue.current.isNull() && !queue.waiting.empty() && queue.window) {
    const Request request = std::move(queue.waiting.front());
    queue.waiting.pop_front();
    if (request->open && !request->open()) continue;
    auto* popup = new QuickPopup(request, options_);
    queue.current = popup;
    connect(
        popup, &QObject::destroyed, this, [this, window] { showNext(window); },
        Qt::QueuedConnection);
    popup->present(*window);
  }
}

void QuickPopupRouter::windowGone(QObject* window) {
  const auto found = queues_.find(window);
  if (found == queues_.end()) return;
  const auto waiting = std::move(found->second.waiting);
  queues_.erase(found);
  for (const Request& request : waiting) {
    QMetaObject::invokeMethod(
        this, [this, request] { accept(request); }, Qt::QueuedConnection);
  }
}

}  // namespace kifo
