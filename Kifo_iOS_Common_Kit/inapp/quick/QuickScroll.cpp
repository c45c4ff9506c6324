#include "Kifo_iOS_Common_Kit/inapp/quick/QuickScroll.h"

#include <QWheelEvent>

namespace kifo {
namespace {

constexpr int kRevealMargin = 8;
constexpr double kNotch = 72;  ///< What one notch of a wheel scrolls.
constexpr int kFlashMilliseconds = 1000;
constexpr int kAppearedMilliseconds = 150;

}  // namespace

QuickScroll::QuickScroll(QQuickItem* parent) : QuickPiece(parent) {
  setClip(true);
  fade_.setDuration(kFlashMilliseconds);
  fade_.setKeyValues({{0.0, 0.0}, {0.15, 1.0}, {0.6, 1.0}, {1.0, 0.0}});
  connect(&fade_, &QVariantAnimation::valueChanged, this, &QuickScroll::scrolled);
}

void QuickScroll::componentComplete() {
  QuickPiece::componentComplete();
  if (!popup()) return;
  popup()->addScroll(this);
  connect(popup(), &QuickPopup::laidOut, this, [this] { scrollBy(0); });
}

double QuickScroll::contentHeight() const {
  if (!popup()) return 0;
  if (part() == PanelScroll) return parts().place().contentHeight;
  const auto& rows = parts().rows();
  return rows.empty() ? 0 : rows.back().box.bottom();
}

double QuickScroll::strength() const {
  if (mostY() <= 0) return 0;
  if (parts().theme().options.reducedMotion) return 1;
  return fade_.state() == QAbstractAnimation::Running ? fade_.currentValue().toDouble() : 0;
}

bool QuickScroll::scrollBy(double pixels) {
  const double before = contentY_;
  contentY_ = std::clamp(contentY_ + pixels, 0.0, mostY());
  const bool moved = contentY_ != before;
  if (moved) {
    wasScrolled_ = true;
    // Scrolling keeps the bar fully visible: its time stands at the end of the fade in.
    if (fade_.state() != QAbstractAnimation::Running) fade_.start();
    fade_.setCurrentTime(kAppearedMilliseconds);
  }
  Q_EMIT scrolled();
  return moved;
}

void QuickScroll::reveal(const QQuickItem& descendant) {
  const double top = descendant.mapToItem(this, QPointF()).y();
  const double bottom = top + std::min(descendant.height(), height());
  if (top < kRevealMargin) scrollBy(top - kRevealMargin);
  if (bottom > height() - kRevealMargin) scrollBy(bottom + kRevealMargin - height());
}

void QuickScroll::flash() {
  if (mostY() <= 0 || parts().theme().options.reducedMotion) return;
  if (fade_.state() != QAbstractAnimation::Running) fade_.start();
}

void QuickScroll::wheelEvent(QWheelEvent* event) {
  const double pixels = event->pixelDelta().isNull() ? event->angleDelta().y() / 120.0 * kNotch
                                                     : event->pixelDelta().y();
  event->setAccepted(scrollBy(-pixels));
}

bool scrollAround(QQuickItem* from, double pixels) {
  for (QQuickItem* item = from; item; item = item->parentItem()) {
    auto* scroll = qobject_cast<QuickScroll*>(item);
    if (scroll && scroll->scrollBy(pixels)) return true;
  }
  return false;
}

}  // namespace kifo
