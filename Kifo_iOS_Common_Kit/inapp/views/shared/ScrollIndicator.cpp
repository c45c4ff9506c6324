#include "Kifo_iOS_Common_Kit/inapp/views/shared/ScrollIndicator.h"

#include <algorithm>

#include <QPainter>
#include <QScrollBar>

namespace kifo {
namespace {

constexpr int kFlashMilliseconds = 1000;
constexpr int kAppearedMilliseconds = 150;
constexpr double kShortest = 24;  ///< Logical pixels of bar, however long the content.

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
  const double visible = strength();
  if (visible <= 0) return;
  const double whole = bar_->maximum() - bar_->minimum() + bar_->pageStep();
  const double length =
      std::max(height() * bar_->pageStep() / whole, std::min(kShortest, 1.0 * height()));
  const double along =
      static_cast<double>(bar_->value() - bar_->minimum()) / (bar_->maximum() - bar_->minimum());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(0.45 * visible);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color_);
  painter.drawRoundedRect(QRectF(0, along * (height() - length), width(), length), thickness / 2.0,
                          thickness / 2.0);
}

}  // namespace kifo
