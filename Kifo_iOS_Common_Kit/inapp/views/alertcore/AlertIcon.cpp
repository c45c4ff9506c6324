#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertIcon.h"

#include <QPixmap>
#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyleKit.h"

namespace kifo {

void AlertIcon::paint(QPainter& painter, const QRectF& rect, int step) const {
  painter.setRenderHint(QPainter::Antialiasing);
  switch (kind) {
    case Kind::image:
      return paintImage(painter, rect);
    case Kind::indicator:
      return paintIndicator(painter, rect, step);
    case Kind::icon:
      return KifoPopupStyleKit::draw(painter, rect, style, color);
    case Kind::none:
      return;
  }
}

void AlertIcon::paintImage(QPainter& painter, const QRectF& rect) const {
  QPixmap picture = image.pixmap(rect.size().toSize(), painter.device()->devicePixelRatioF());
  if (picture.isNull()) return;
  if (color.isValid()) {
    QPainter tint(&picture);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(picture.rect(), color);
  }
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const QSizeF fitted = picture.deviceIndependentSize().scaled(rect.size(), Qt::KeepAspectRatio);
  QRectF place(QPointF(), fitted);
  place.moveCenter(rect.center());
  painter.drawPixmap(place, picture, QRectF(picture.rect()));
}

void AlertIcon::paintIndicator(QPainter& painter, const QRectF& rect, int step) const {
  const double side = std::min(rect.width(), rect.height());
  painter.translate(rect.center());
  painter.setPen(Qt::NoPen);
  for (int spoke = 0; spoke < kSteps; ++spoke) {
    const int age = (step - spoke + kSteps) % kSteps;
    QColor faded = color;
    faded.setAlphaF(color.alphaF() * std::max(0.2F, 1 - 0.09F * static_cast<float>(age)));
    painter.setBrush(faded);
    const QRectF bar(-side * 0.042, -side * 0.5, side * 0.084, side * 0.24);
    painter.drawRoundedRect(bar, bar.width() / 2, bar.width() / 2);
    painter.rotate(360.0 / kSteps);
  }
}

}  // namespace kifo
