#pragma once

#include "apps/demo/shop/Catalogue.h"
#include "apps/demo/shop/screens/ShopScreen.h"

namespace kifo::shop {

class Picture;
class StarRow;

/// One product, large.
class ProductScreen : public ShopScreen {
  Q_OBJECT

 public:
  explicit ProductScreen(QWidget* parent = nullptr);

  void setProduct(const Product& product);

 Q_SIGNALS:
  void addWanted(const kifo::shop::Product& product);
  void backWanted();

 private:
  void addToBasket();

  const Product* product_;
  Picture* picture_;
  StarRow* stars_;
  QLabel* maker_;
  QLabel* name_;
  QLabel* description_;
  QLabel* price_;
};

}  // namespace kifo::shop
