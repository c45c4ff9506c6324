#include "platform/qt/QtPopupStage.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "platform/qt/QtPopupDesk.h"
#include "platform/qt/QtWindowFollower.h"

namespace kifo {

QtPopupStage::QtPopupStage(QWidget* window, const PopUpOptions& options)
    : options_(options), widget_(window) {}

QtPopupStage::QtPopupStage(QWindow* window, const PopUpOptions& options)
    : options_(options), window_(window) {}

void QtPopupStage::enqueue(Request request) {
  waiting_.push_back(std::move(request));
  showNext();
}

std::deque<QtPopupStage::Request> QtPopupStage::takeWaiting() {
  return std::exchange(waiting_, {});
}

void QtPopupStage::showNext() {
  while (current_.isNull() && !waiting_.empty() && (widget_ || window_)) {
    const Request request = std::move(waiting_.front());
    waiting_.pop_front();
    if (request->preferences.controller.expired()) {
      QtPopupDesk::notShown(*request, "its screen is gone");
    } else {
      show(request);
    }
  }
}

void QtPopupStage::show(const Request& request) {
  auto* popup = new PopUpWindow(request, options_, widget_);
  current_ = popup;
  // The next one must not be made inside the destructor of this one or of the host's window.
  connect(popup, &QObject::destroyed, this, &QtPopupStage::showNext, Qt::QueuedConnection);
  if (window_) new QtWindowFollower(popup, window_);
  popup->present();
}

}  // namespace kifo
