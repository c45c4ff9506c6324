#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertIconView.h"

#include <QPainter>
#include <QTimerEvent>

namespace kifo {

AlertIconView::AlertIconView(QWidget* parent) : QWidget(parent) {}

void AlertIconView::setIcon(const AlertIcon& icon) {
  icon_ = icon;
  runClock();
  update();
}

void AlertIconView::runClock() {
  if (icon_.kind != AlertIcon::Kind::indicator || !isVisible()) return clock_.stop();
  if (!clock_.isActive()) clock_.start(AlertIcon::kStepMilliseconds, this);
}

void AlertIconView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  runClock();
}

void AlertIconView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  runClock();
}

void AlertIconView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != clock_.timerId()) return QWidget::timerEvent(event);
  step_ = (step_ + 1) % AlertIcon::kSteps;
  update();
}

void AlertIconView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  icon_.paint(painter, rect(), step_);
}

}  // namespace kifo
