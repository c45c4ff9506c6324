#include "Kifo_iOS_Common_Kit/inapp/views/shared/ActivityIndicator.h"

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"

namespace kifo {
namespace {

constexpr int kStepMilliseconds = 100;

}  // namespace

ActivityIndicator::ActivityIndicator(const QColor& color, bool still, QWidget* parent)
    : QWidget(parent), color_(color), still_(still) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  resize(size, size);
  hide();
}

void ActivityIndicator::startAnimating() {
  animating_ = true;
  show();
  if (!still_) timer_.start(kStepMilliseconds, this);
}

void ActivityIndicator::stopAnimating() {
  animating_ = false;
  timer_.stop();
  hide();
}

void ActivityIndicator::timerEvent(QTimerEvent*) {
  step_ = (step_ + 1) % kSpinnerSteps;
  update();
}

void ActivityIndicator::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintSpinner(painter, color_, rect(), step_);
}

}  // namespace kifo
