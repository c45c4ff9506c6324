#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertIconView.h"

#include <QPainter>
#include <QTimerEvent>
#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupStyleKit.h"

namespace kifo {
namespace {

// Twelve spokes, one turn in about a second: smooth to the eye and next to nothing for a processor.
constexpr int kSpokes = 12;
constexpr int kStepMilliseconds = 80;

}  // namespace

AlertIconView::AlertIconView(QWidget* parent) : QWidget(parent) {}

void AlertIconView::setContent(Content content, const QColor& color) {
  content_ = content;
  color_ = color;
  runClock();
  update();
}

void AlertIconView::showImage(const QIcon& image, const QColor& tint) {
  image_ = image;
  setContent(Content::image, tint);
}

void AlertIconView::showIcon(KifoPopupStyle style, const QColor& color) {
  style_ = style;
  setContent(Content::icon, color);
}

void AlertIconView::showIndicator(const QColor& color) {
  setContent(Content::indicator, color);
}

void AlertIconView::runClock() {
  if (content_ != Content::indicator || !isVisible()) return clock_.stop();
  if (!clock_.isActive()) clock_.start(kStepMilliseconds, this);
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
  step_ = (step_ + 1) % kSpokes;
  update();
}

void AlertIconView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (content_ == Content::image) return paintImage(painter);
  if (content_ == Content::indicator) return paintIndicator(painter);
  KifoPopupStyleKit::draw(painter, rect(), style_, color_);
}

void AlertIconView::paintImage(QPainter& painter) const {
  QPixmap picture = image_.pixmap(size(), devicePixelRatioF());
  if (picture.isNull()) return;
  if (color_.isValid()) {
    QPainter tint(&picture);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(picture.rect(), color_);
  }
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const QSizeF fitted = picture.deviceIndependentSize().scaled(size(), Qt::KeepAspectRatio);
  QRectF place(QPointF(), fitted);
  place.moveCenter(QRectF(rect()).center());
  painter.drawPixmap(place, picture, QRectF(picture.rect()));
}

void AlertIconView::paintIndicator(QPainter& painter) const {
  const double side = std::min(width(), height());
  painter.translate(QRectF(rect()).center());
  painter.setPen(Qt::NoPen);
  for (int spoke = 0; spoke < kSpokes; ++spoke) {
    const int age = (step_ - spoke + kSpokes) % kSpokes;
    QColor color = color_;
    color.setAlphaF(color_.alphaF() * std::max(0.2F, 1 - 0.09F * static_cast<float>(age)));
    painter.setBrush(color);
    const QRectF bar(-side * 0.042, -side * 0.5, side * 0.084, side * 0.24);
    painter.drawRoundedRect(bar, bar.width() / 2, bar.width() / 2);
    painter.rotate(360.0 / kSpokes);
  }
}

}  // namespace kifo
