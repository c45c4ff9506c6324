#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupShadow.h"

#include <QPaintDevice>
#include <cmath>

namespace kifo {
namespace {

constexpr int kDrop = 6;          // The light comes from above.
constexpr double kDarkest = 0.4;  // Right below the edge.

}  // namespace

void KifoPopupShadow::render(const QPainterPath& outline, double devicePixelRatio) {
  outline_ = outline;
  const QSizeF size = outline.boundingRect().size() + QSizeF(2 * kReach, 2 * kReach);
  picture_ = QPixmap((size * devicePixelRatio).toSize());
  picture_.setDevicePixelRatio(devicePixelRatio);
  picture_.fill(Qt::transparent);
  QPainter painter(&picture_);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.translate(QPointF(kReach, kReach) - outline.boundingRect().topLeft());
  // Each ring lies on the wider and lighter one before it, so that the inner ones replace it.
  for (int reach = kReach - kDrop; reach >= 0; --reach) {
    const double nearness = 1 - static_cast<double>(reach) / (kReach - kDrop + 1);
    QColor color(Qt::black);
    color.setAlphaF(static_cast<float>(kDarkest * std::pow(nearness, 2.5)));
    painter.setPen(QPen(color, 2.0 * reach, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(color);
    painter.drawPath(outline.translated(0, kDrop));
  }
}

void KifoPopupShadow::paint(QPainter& painter, const QPainterPath& outline, const QPoint& at) {
  const double ratio = painter.device()->devicePixelRatioF();
  if (outline != outline_ || picture_.devicePixelRatio() != ratio) render(outline, ratio);
  painter.drawPixmap(outline.boundingRect().topLeft() + at - QPointF(kReach, kReach), picture_);
}

}  // namespace kifo
