#pragma once

#include <QColor>
#include <QPixmap>
#include <QWidget>

#include "apps/demo/shop/Catalogue.h"

namespace kifo::shop {

/// A product on its backdrop, with rounded corners.
class Picture : public QWidget {
  Q_OBJECT

 public:
  explicit Picture(const Product& product, QWidget* parent = nullptr);

  void setProduct(const Product& product);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor backdrop_;
  QPixmap picture_;
};

/// The stars of a product, with their number.
class StarRow : public QWidget {
  Q_OBJECT

 public:
  explicit StarRow(const Product& product, QWidget* parent = nullptr);

  void setProduct(const Product& product);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double stars_;
};

}  // namespace kifo::shop
