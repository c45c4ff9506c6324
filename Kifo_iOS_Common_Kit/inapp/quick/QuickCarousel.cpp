#include "Kifo_iOS_Common_Kit/inapp/quick/QuickCarousel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QKeyEvent>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPictures.h"

namespace kifo {
namespace {

constexpr double kSwipe = 0.2;         ///< Of the width, to turn a page.
constexpr double kSwipeThreshold = 8;  ///< Logical pixels before a press counts as a swipe.

}  // namespace

void QuickCarousel::mousePressEvent(QMouseEvent* event) {
  event->accept();
  forceActiveFocus(Qt::MouseFocusReason);
  swiping_ = false;
  swipeStart_ = event->position().x();
  swipeOffset_ = popup()->pictures().offset();
}

void QuickCarousel::mouseMoveEvent(QMouseEvent* event) {
  const double travelled = event->position().x() - swipeStart_;
  swiping_ = swiping_ || std::abs(travelled) > kSwipeThreshold;
  if (!swiping_) return;
  const double pages = travelled / std::max(width(), 1.0);
  const double wanted = swipeOffset_ + (parts().isMirrored() ? pages : -pages);
  popup()->pictures().slideTo(
      std::clamp(wanted, 0.0, std::max(popup()->pictures().pages() - 1, 0) * 1.0));
}

/// A press without a swipe is one of the popup's body.
void QuickCarousel::mouseReleaseEvent(QMouseEvent*) {
  if (!std::exchange(swiping_, false)) return popup()->touchesBegan();
  const int current = popup()->state().currentIndex;
  const double turned = popup()->pictures().offset() - current;
  popup()->pictures().turnTo(current + (turned > kSwipe ? 1 : turned < -kSwipe ? -1 : 0));
}

void QuickCarousel::keyPressEvent(QKeyEvent* event) {
  const int forwards = parts().isMirrored() ? -1 : 1;
  const int current = popup()->state().currentIndex;
  if (event->key() == Qt::Key_Right) return popup()->pictures().turnTo(current + forwards);
  if (event->key() == Qt::Key_Left) return popup()->pictures().turnTo(current - forwards);
  event->ignore();
}

}  // namespace kifo
