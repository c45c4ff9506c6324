#include "apps/demo/shop/widgets/ProductCard.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <numbers>

#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {
namespace {

QPainterPath star(QPointF centre, double radius) {
  QPolygonF points;
  for (int corner = 0; corner < 10; ++corner) {
    const double angle = corner * std::numbers::pi / 5;
    const double reach = corner % 2 == 0 ? radius : radius * 0.45;
    points << centre + QPointF(std::sin(angle), -std::cos(angle)) * reach;
  }
  QPainterPath path;
  path.addPolygon(points);
  path.closeSubpath();
  return path;
}

}  // namespace

void paintStars(QPainter& painter, QPointF leftMiddle, double size, double stars) {
  QPainterPath row;
  for (int index = 0; index < 5; ++index) {
    row.addPath(star(leftMiddle + QPointF(size * (index * 1.25 + 0.5), 0), size / 2));
  }
  const double reach = size * (std::floor(stars) * 1.25 + (stars - std::floor(stars)));
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::kLine);
  painter.drawPath(row);
  painter.save();
  painter.setClipRect(QRectF(leftMiddle.x(), leftMiddle.y() - size, reach, size * 2),
                      Qt::IntersectClip);
  painter.setBrush(QColor(0xE3, 0x9A, 0x2B));
  painter.drawPath(row);
  painter.restore();
}

ProductCard::ProductCard(const Product& product, QWidget* parent)
    : QAbstractButton(parent), product_(product), picture_(product.picture) {
  setText(product.name);
  setAccessibleName(tr("%1, %2").arg(product.name, priceText(product.price)));
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
  setMinimumSize(200, 300);
  lift_.setDuration(140);
  lift_.setStartValue(0.0);
  lift_.setEndValue(0.0);
  connect(&lift_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void ProductCard::riseTo(double lift) {
  const double from = lift_.currentValue().toDouble();
  lift_.stop();
  lift_.setStartValue(from);
  lift_.setEndValue(lift);
  lift_.start();
}

void ProductCard::enterEvent(QEnterEvent*) {
  riseTo(1.0);
}
void ProductCard::leaveEvent(QEvent*) {
  riseTo(0.0);
}

void ProductCard::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double lift = lift_.currentValue().toDouble();
  painter.translate(0, -3 * lift);
  theme::paintCard(painter, rect(), theme::kCard, lift);
  const QRectF card =
      QRectF(rect()).adjusted(theme::kShadow, theme::kShadow, -theme::kShadow, -theme::kShadow);
  const QRectF picture = card.adjusted(8, 8, -8, -92);
  painter.setPen(Qt::NoPen);
  painter.setBrush(product_.backdrop);
  painter.drawRoundedRect(picture, theme::kRadius - 6, theme::kRadius - 6);
  const double side = std::min(picture.width(), picture.height()) * (0.92 + 0.04 * lift);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawPixmap(QRectF(picture.center() - QPointF(side, side) / 2, QSizeF(side, side)),
                     picture_, picture_.rect());
  QRectF line(card.left() + 18, picture.bottom() + 12, card.width() - 36, 24);
  painter.setPen(theme::kInk);
  painter.setFont(theme::text(16, QFont::DemiBold));
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, product_.name);
  painter.setFont(theme::text(13));
  painter.setPen(theme::kMuted);
  painter.drawText(line.translated(0, 23), Qt::AlignLeft | Qt::AlignVCenter, product_.maker);
  const QRectF last = line.translated(0, 48);
  paintStars(painter, QPointF(last.left(), last.center().y()), 13, product_.stars);
  painter.setPen(theme::kInk);
  painter.setFont(theme::text(16, QFont::DemiBold));
  painter.drawText(last, Qt::AlignRight | Qt::AlignVCenter, priceText(product_.price));
  if (hasFocus()) theme::paintFocusRing(painter, card, theme::kRadius, theme::kGreen);
}

}  // namespace kifo::shop
