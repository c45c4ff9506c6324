#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"

#include <cmath>

#include <QPainter>

namespace kifo {
namespace {

constexpr int kTextInset = 4;  ///< From the border to the code.

}  // namespace

DashedLabel::DashedLabel(QWidget* parent) : TextLabel(parent) {
  setLineWidth(shapeLayer_.lineWidth);
  layoutSubviews();
}

void DashedLabel::setTintColor(const QColor& color) {
  shapeLayer_.strokeColor = color;
  update();
}

void DashedLabel::setBackgroundColor(const QColor& color) {
  background_ = color;
  update();
}

void DashedLabel::setLineWidth(double width) {
  shapeLayer_.lineWidth = width;
  const int margin = static_cast<int>(std::ceil(width)) + kTextInset;
  setContentsMargins(margin, margin, margin, margin);
  update();
}

void DashedLabel::layoutSubviews() {
  shapeLayer_.path = {};
  shapeLayer_.path.addRect(rect());
}

void DashedLabel::resizeEvent(QResizeEvent* event) {
  layoutSubviews();
  TextLabel::resizeEvent(event);
}

void DashedLabel::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    painter.fillRect(rect(), background_);
    QPen pen(shapeLayer_.strokeColor, shapeLayer_.lineWidth);
    pen.setJoinStyle(shapeLayer_.lineJoin);
    pen.setCapStyle(Qt::FlatCap);
    QList<double> inPenWidths;
    for (const double length : shapeLayer_.lineDashPattern) {
      inPenWidths.append(length / shapeLayer_.lineWidth);
    }
    pen.setDashPattern(inPenWidths);
    // Inside the bounds: half of a stroke along them would be clipped.
    const double half = shapeLayer_.lineWidth / 2;
    QPainterPath inside;
    inside.addRect(shapeLayer_.path.boundingRect().adjusted(half, half, -half, -half));
    painter.strokePath(inside, pen);
  }
  TextLabel::paintEvent(event);
}

}  // namespace kifo
