#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"

#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

constexpr double kDisc = 32;
constexpr double kArm = 5;  ///< From the cross's middle to its ends, along each axis.
constexpr double kImage = 16;

QRectF centred(const QRectF& place, double side) {
  QRectF inner(0, 0, side, side);
  inner.moveCenter(place.center());
  return inner;
}

}  // namespace

CloseButton::CloseButton(QWidget* parent) : PopupControl(parent) {
  setAutoDefault(false);
}

void CloseButton::setLook(const QIcon& image, const QColor& behind,
                          const std::optional<QColor>& disc) {
  image_ = image;
  behind_ = behind;
  disc_ = disc;
  update();
}

void CloseButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ground = disc_.value_or(behind_);
  const QColor ink = inkOn(ground);
  const double touched = isDown() ? 0.16 : underMouse() ? 0.08 : 0.0;
  const QColor seen = mixed(ground, ink, touched);
  const QRectF disc = centred(rect(), kDisc);
  painter.setPen(disc_ ? QPen(QColor(0, 0, 0, 40), 1) : QPen(Qt::NoPen));
  painter.setBrush(disc_ || touched > 0 ? QBrush(seen) : QBrush(Qt::NoBrush));
  painter.drawEllipse(disc);
  if (image_.isNull()) {
    const QPointF middle = disc.center();
    painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(middle - QPointF(kArm, kArm), middle + QPointF(kArm, kArm));
    painter.drawLine(middle - QPointF(kArm, -kArm), middle + QPointF(kArm, -kArm));
  } else {
    image_.paint(&painter, centred(rect(), kImage).toRect());
  }
  if (showsFocus()) paintFocusRing(painter, disc, kDisc / 2, seen, ink);
}

}  // namespace kifo
