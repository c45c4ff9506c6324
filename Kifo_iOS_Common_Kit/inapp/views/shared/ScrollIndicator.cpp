#include "Kifo_iOS_Common_Kit/inapp/views/shared/ScrollIndicator.h"

#include <QPainter>
#include <QScrollBar>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"

namespace kifo {
namespace {

constexpr int kFlashMilliseconds = 1000;
constexpr int kAppearedMilliseconds = 150;

}  // namespace

ScrollIndicator::ScrollIndicator(QScrollBar* bar, bool still, QWidget* parent)
    : QWidget(parent), bar_(bar), still_(still) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  fade_.setDuration(kFlashMilliseconds);
  fade_.setKeyValues({{0.0, 0.0}, {0.15, 1.0}, {0.6, 1.0}, {1.0, 0.0}});
  connect(&fade_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
  connect(bar_, &QScrollBar::valueChanged, this, &ScrollIndicator::appear);
  connect(bar_, &QScrollBar::rangeChanged, this, qOverload<>(&QWidget::update));
}

/// Scrolling keeps the bar fully visible: its time stands at the end of the fade in.
void ScrollIndicator::appear() {
  if (still_) return update();
  if (fade_.state() != QAbstractAnimation::Running) fade_.start();
  fade_.setCurrentTime(kAppearedMilliseconds);
}

void ScrollIndicator::flash() {
  ++flashes_;
  if (!isScrollable() || still_) return;
  if (fade_.state() != QAbstractAnimation::Running) fade_.start();
}

bool ScrollIndicator::isScrollable() const {
  return bar_->maximum() > bar_->minimum();
}

double ScrollIndicator::strength() const {
  if (!isScrollable()) return 0;
  if (still_) return 1;
  return fade_.state() == QAbstractAnimation::Running ? fade_.currentValue().toDouble() : 0;
}

void ScrollIndicator::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const ScrollState state{1.0 * bar_->value(), 1.0 * bar_->maximum(), 1.0 * bar_->pageStep()};
  paintScrollIndicator(painter, rect(), state, color_, strength());
}

}  // namespace kifo
