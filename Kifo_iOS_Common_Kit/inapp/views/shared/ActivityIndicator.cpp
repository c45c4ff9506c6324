#include "Kifo_iOS_Common_Kit/inapp/views/shared/ActivityIndicator.h"

#include <QPainter>

namespace kifo {
namespace {

constexpr int kSpokes = 8;
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
  step_ = (step_ + 1) % kSpokes;
  update();
}

void ActivityIndicator::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect()).center());
  for (int spoke = 0; spoke < kSpokes; ++spoke) {
    const int age = (step_ - spoke + kSpokes) % kSpokes;
    QColor color = color_;
    color.setAlphaF(static_cast<float>(0.75 - 0.6 * age / kSpokes));
    painter.setPen(QPen(color, 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.save();
    painter.rotate(360.0 / kSpokes * spoke);
    painter.drawLine(QPointF(0, -5), QPointF(0, -8));
    painter.restore();
  }
}

}  // namespace kifo
