#include "platform/qt/popups/PopupRouter.h"

#include <QCoreApplication>
#include <QWindow>
#include <algorithm>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/DesktopMotion.h"

namespace kifo {
namespace {

/// The popups that are shown, of every toolkit, and all queues.
struct Shown {
  struct Popup {
    QPointer<QObject> popup;
    QPointer<QWindow> window;
  };
  std::vector<Popup> popups;
  std::vector<WindowPopups*> queues;

  static Shown& shared() {
    static auto& only = *new Shown;
    return only;
  }

  bool isTaken(const QWindow* window) {
    std::erase_if(popups, [](const Popup& each) { return each.popup.isNull(); });
    return window && std::ranges::any_of(
                         popups, [window](const Popup& each) { return each.window == window; });
  }
};

}  // namespace

WindowPopups::WindowPopups(std::string_view tag, PopUpOptions options)
    : tag_(tag), options_(std::move(options)), queue_(std::make_shared<PopupQueue>(tag)) {
  Shown::shared().queues.push_back(this);
}

WindowPopups::~WindowPopups() {
  std::erase(Shown::shared().queues, this);
}

void WindowPopups::enqueue(const Request& request) {
  queue_->enqueue(request);
  showNext();
}

std::deque<WindowPopups::Request> WindowPopups::takeWaiting() {
  return queue_->takeWaiting();
}

bool WindowPopups::canShow() const {
  return current_.isNull() && isReady() && !Shown::shared().isTaken(systemWindow());
}

void WindowPopups::showNext() {
  const auto queue = queue_;
  const QPointer<WindowPopups> self(this);
  const std::string_view tag = tag_;
  if (const auto request = queue->takeNext([&] { return self && canShow(); })) {
    PopUpOptions options = options_;
    options.reducedMotion = options.reducedMotion || !desktopAnimates();
    current_ = show(request, std::move(options));
    Shown::shared().popups.push_back({current_, systemWindow()});
    // The next one must not be made inside the destructor of this one or of the host's window. It
    // may be one of a queue that is made meanwhile.
    connect(current_, &QObject::destroyed, QCoreApplication::instance(), [] {
      for (WindowPopups* each : Shown::shared().queues) {
        QMetaObject::invokeMethod(each, &WindowPopups::showNext, Qt::QueuedConnection);
      }
    });
    return;
  }
  if (self) return;
  for (const auto& orphan : queue->takeWaiting())
    rules::sayNotShown(tag, *orphan, "its window is gone");
}

PopupRouter::PopupRouter(QObject* parent)
    : QObject(parent), link_(std::make_shared<UiLink<PopupRouter>>(this)) {}

PopupRouter::~PopupRouter() {
  link_->close();
}

WindowPopups& PopupRouter::queueOf(QObject* window) {
  auto& queue = queues_[window];
  if (!queue) {
    queue = makeQueue(window);
    connect(window, &QObject::destroyed, this, &PopupRouter::windowGone);
  }
  return *queue;
}

void PopupRouter::windowGone(QObject* window) {
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
