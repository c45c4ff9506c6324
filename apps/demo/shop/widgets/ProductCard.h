#pragma once

#include <QAbstractButton>
#include <QPixmap>
#include <QVariantAnimation>

#include "apps/demo/shop/Catalogue.h"

namespace kifo::shop {

/// One product on the shelf: its picture, name, stars and price. It rises a little under the
/// pointer.
class ProductCard : public QAbstractButton {
  Q_OBJECT

 public:
  explicit ProductCard(const Product& product, QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override { return {250, 300}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void riseTo(double lift);

  const Product& product_;
  const QPixmap picture_;
  QVariantAnimation lift_;
};

/// Five stars, `stars` of them filled, from `left` on and centred on `middle`.
void paintStars(QPainter& painter, QPointF leftMiddle, double size, double stars);

}  // namespace kifo::shop
