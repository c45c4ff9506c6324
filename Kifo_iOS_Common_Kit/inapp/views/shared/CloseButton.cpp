#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"

namespace kifo {
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
  const QRectF image = paintCloseButton(painter, rect(), behind_, disc_, !image_.isNull(), touch());
  if (!image_.isNull()) image_.paint(&painter, image.toRect());
}

}  // namespace kifo
