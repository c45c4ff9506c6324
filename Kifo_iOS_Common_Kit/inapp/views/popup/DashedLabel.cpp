#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"

#include <QPainter>

namespace kifo {

void DashedLabel::setShape(const CouponLook& look) {
  look_ = look;
  const int margin = look.margin();
  setContentsMargins(margin, margin, margin, margin);
  update();
}

void DashedLabel::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    look_.paint(painter, rect());
  }
  TextLabel::paintEvent(event);
}

}  // namespace kifo
