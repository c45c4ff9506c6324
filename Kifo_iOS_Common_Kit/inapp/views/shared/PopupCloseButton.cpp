#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupCloseButton.h"

namespace kifo {
namespace {

constexpr double kDisc = 32;
constexpr double kArm = 5;  ///< From the cross's middle to its ends, along each axis.

}  // namespace

void PopupCloseButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF middle = QRectF(rect()).center();
  const QRectF disc(middle.x() - kDisc / 2, middle.y() - kDisc / 2, kDisc, kDisc);
  painter.setPen(QPen(QColor(0, 0, 0, 40), 1));
  painter.setBrush(isDown()       ? QColor(0xd5, 0xd5, 0xda)
                   : underMouse() ? QColor(0xec, 0xec, 0xf0)
                                  : QColor(Qt::white));
  painter.drawEllipse(disc);
  painter.setPen(QPen(QColor(0x1c, 0x1c, 0x1e), 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(middle - QPointF(kArm, kArm), middle + QPointF(kArm, kArm));
  painter.drawLine(middle - QPointF(kArm, -kArm), middle + QPointF(kArm, -kArm));
  if (showsFocus()) {
    paintFocusRing(painter, disc.adjusted(1, 1, -1, -1), kDisc / 2, QColor(0x0a, 0x5c, 0xd8));
    paintFocusRing(painter, disc.adjusted(-4, -4, 4, 4), kDisc, Qt::white);
  }
}

}  // namespace kifo
