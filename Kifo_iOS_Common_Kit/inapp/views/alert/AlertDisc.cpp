#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertDisc.h"

#include <QPainter>

namespace kifo {

AlertDisc::AlertDisc(QWidget* parent) : QWidget(parent) {}

void AlertDisc::setColor(const QColor& color) {
  color_ = color;
  update();
}

void AlertDisc::setRim(const QColor& color, int height) {
  rim_ = color;
  rimHeight_ = height;
  update();
}

void AlertDisc::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color_);
  painter.drawEllipse(rect());
  if (!rim_.isValid() || rimHeight_ <= 0) return;
  painter.setClipRect(0, 0, width(), rimHeight_);
  painter.setPen(QPen(rim_, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace kifo
