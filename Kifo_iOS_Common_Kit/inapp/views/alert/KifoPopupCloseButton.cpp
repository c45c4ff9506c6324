#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupCloseButton.h"

#include <QPainter>
#include <QStyleOption>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupStyleKit.h"

namespace kifo {
namespace {

constexpr int kPlace = 36;
constexpr int kCross = 12;
constexpr int kImage = 16;

QRect centred(const QRect& place, int side) {
  QRect inner(0, 0, side, side);
  inner.moveCenter(place.center());
  return inner;
}

}  // namespace

KifoPopupCloseButton::KifoPopupCloseButton(QWidget* parent) : QPushButton(parent) {
  setAccessibleName(tr("Close"));
  setAutoDefault(false);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setAttribute(Qt::WA_Hover);
  setFixedSize(kPlace, kPlace);
}

void KifoPopupCloseButton::setLook(const QIcon& image, const QColor& color) {
  image_ = image;
  color_ = color;
  update();
}

void KifoPopupCloseButton::paintEvent(QPaintEvent* /*event*/) {
  QStyleOption option;
  option.initFrom(this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool focusSeen =
      (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange);
  if (underMouse() || isDown() || focusSeen) {
    QColor ground = color_;
    ground.setAlphaF(isDown() ? 0.25F : 0.12F);
    painter.setPen(focusSeen ? QPen(color_, 2) : QPen(Qt::NoPen));
    painter.setBrush(ground);
    painter.drawEllipse(centred(rect(), kPlace - 10));
  }
  if (image_.isNull()) {
    return KifoPopupStyleKit::drawCloseCross(painter, centred(rect(), kCross), color_);
  }
  image_.paint(&painter, centred(rect(), kImage));
}

}  // namespace kifo
