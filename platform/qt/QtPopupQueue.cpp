#include "platform/qt/QtPopupQueue.h"

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "platform/qt/QtWindowFollower.h"

namespace kifo {

QtPopupQueue::QtPopupQueue(QWidget* window, const PopUpOptions& options)
    : options_(options), widget_(window) {}

QtPopupQueue::QtPopupQueue(QWindow* window, const PopUpOptions& options)
    : options_(options), window_(window) {}

void QtPopupQueue::enqueue(const Request& request) {
  queue_->enqueue(request);
  showNext();
}

std::deque<QtPopupQueue::Request> QtPopupQueue::takeWaiting() {
  return queue_->takeWaiting();
}

bool QtPopupQueue::canShow() const {
  return current_.isNull() && (widget_ || window_);
}

void QtPopupQueue::showNext() {
  const auto queue = queue_;
  const QPointer<QtPopupQueue> self(this);
  const auto request = queue->takeNext([&] { return self && canShow(); });
  if (request) return show(request);
  if (self) return;
  for (const auto& orphan : queue->takeWaiting()) {
    sayNotShown("QtPopupPresenter", *orphan, "its window is gone");
  }
}

void QtPopupQueue::show(const Request& request) {
  auto* popup = new PopUpWindow(request, options_, widget_);
  current_ = popup;
  // The next one must not be made inside the destructor of this one or of the host's window.
  connect(popup, &QObject::destroyed, this, &QtPopupQueue::showNext, Qt::QueuedConnection);
  if (window_) new QtWindowFollower(popup, window_);
  popup->present();
}

}  // namespace kifo
