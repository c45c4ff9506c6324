#include "platform/qt/popups/QtPopupQueue.h"

#include <QApplication>
#include <QStyle>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "platform/qt/popups/QtWindowFollower.h"

namespace kifo {

QtPopupQueue::QtPopupQueue(QWidget* window, const PopUpOptions& options)
    : WindowPopups(LOG_TAG, options), widget_(window) {}

QtPopupQueue::QtPopupQueue(QWindow* window, const PopUpOptions& options)
    : WindowPopups(LOG_TAG, options), window_(window) {}

QWindow* QtPopupQueue::systemWindow() const {
  return widget_ ? widget_->windowHandle() : window_.data();
}

bool QtPopupQueue::isReady() const {
  return widget_ || window_;
}

QObject* QtPopupQueue::show(const Request& request, PopUpOptions options) {
  const int duration = QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration);
  options.reducedMotion = options.reducedMotion || duration == 0;
  auto* popup = new PopUpWindow(request, std::move(options), widget_);
  if (window_) new QtWindowFollower(popup, window_);
  popup->present();
  return popup;
}

}  // namespace kifo
