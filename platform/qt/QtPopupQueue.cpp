#include "platform/qt/QtPopupQueue.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "platform/qt/QtPopupRouter.h"
#include "platform/qt/QtWindowFollower.h"

namespace kifo {

QtPopupQueue::QtPopupQueue(QWidget* window, const PopUpOptions& options)
    : options_(options), widget_(window) {}

QtPopupQueue::QtPopupQueue(QWindow* window, const PopUpOptions& options)
    : options_(options), window_(window) {}

void QtPopupQueue::enqueue(Request request) {
  waiting_.push_back(std::move(request));
  showNext();
}

std::deque<QtPopupQueue::Request> QtPopupQueue::takeWaiting() {
  return std::exchange(waiting_, {});
}

void QtPopupQueue::showNext() {
  while (current_.isNull() && !waiting_.empty() && (widget_ || window_)) {
    const Request request = std::move(waiting_.front());
    waiting_.pop_front();
    if (request->preferences.controller.expired()) {
      QtPopupRouter::notShown(*request, "its screen is gone");
    } else if (!request->open || request->open()) {
      show(request);
    }
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
