#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"

#include <QPainter>

namespace kifo {

DashedLabel::DashedLabel(QWidget* parent) : PopupLabel(parent) {
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
  update();
}

int DashedLabel::heightFor(int width) const {
  const int border = static_cast<int>(2 * shapeLayer_.lineWidth);
  return PopupLabel::heightFor(width) + border;
}

void DashedLabel::layoutSubviews() {
  shapeLayer_.path = {};
  shapeLayer_.path.addRect(rect());
}

void DashedLabel::resizeEvent(QResizeEvent* event) {
  layoutSubviews();
  PopupLabel::resizeEvent(event);
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
    painter.strokePath(shapeLayer_.path, pen);
  }
  PopupLabel::paintEvent(event);
}

}  // namespace kifo
