#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupPalette.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {

void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius, const QColor& surface,
                    const QColor& accent) {
  const FocusRing ring = FocusRing::on(toColor(surface), toColor(accent));
  painter.setBrush(Qt::NoBrush);
  double inset = FocusRing::inset + FocusRing::width / 2;
  for (const Color& color : {ring.outer, ring.inner}) {
    painter.setPen(QPen(toQColor(color), FocusRing::width));
    const double corner = std::max(radius - inset, 0.0);
    painter.drawRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), corner, corner);
    inset += FocusRing::width;
  }
}

}  // namespace kifo
