#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

#include <algorithm>

namespace kifo {

void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius, const QColor& color) {
  constexpr double kWidth = 2;
  painter.setPen(QPen(color, kWidth));
  painter.setBrush(Qt::NoBrush);
  const QRectF ring = bounds.adjusted(kWidth / 2, kWidth / 2, -kWidth / 2, -kWidth / 2);
  const double corner = std::max(radius - kWidth / 2, 0.0);
  painter.drawRoundedRect(ring, corner, corner);
}

}  // namespace kifo
