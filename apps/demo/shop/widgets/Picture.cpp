#include "apps/demo/shop/widgets/Picture.h"

#include <QPainter>

#include "apps/demo/shop/widgets/ProductCard.h"
#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {

Picture::Picture(const Product& product, QWidget* parent) : QWidget(parent) {
  setProduct(product);
}

void Picture::setProduct(const Product& product) {
  backdrop_ = product.backdrop;
  picture_ = QPixmap(product.picture);
  setAccessibleName(product.name);
  update();
}

void Picture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(backdrop_);
  const double radius = std::min<double>(theme::kRadius, width() / 6.0);
  painter.drawRoundedRect(rect(), radius, radius);
  const double side = std::min(width(), height()) * 0.86;
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawPixmap(QRectF(QRectF(rect()).center() - QPointF(side, side) / 2, QSizeF(side, side)),
                     picture_, picture_.rect());
}

StarRow::StarRow(const Product& product, QWidget* parent) : QWidget(parent) {
  setFixedSize(160, 28);
  setProduct(product);
}

void StarRow::setProduct(const Product& product) {
  stars_ = product.stars;
  setAccessibleName(tr("%1 of 5 stars").arg(stars_));
  update();
}

void StarRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintStars(painter, QPointF(0, height() / 2.0), 17, stars_);
  painter.setPen(theme::kMuted);
  painter.setFont(theme::text(14));
  painter.drawText(rect().adjusted(116, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                   QString::number(stars_, 'f', 1));
}

}  // namespace kifo::shop
