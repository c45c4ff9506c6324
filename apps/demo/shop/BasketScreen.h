#pragma once

#include "apps/demo/shop/Basket.h"
#include "apps/demo/shop/ShopScreen.h"

namespace kifo::shop {

class PillButton;

/// What is in the basket, what it costs, and the way to order it.
class BasketScreen : public ShopScreen {
  Q_OBJECT

 public:
  explicit BasketScreen(Basket& basket, QWidget* parent = nullptr);

 private:
  void refresh();
  void order();
  QWidget* rowFor(const Basket::Entry& entry) const;

  Basket& basket_;
  CardFrame* const card_;
  QVBoxLayout* const rows_;
  QLabel* const total_;
  PillButton* const order_;
};

}  // namespace kifo::shop
