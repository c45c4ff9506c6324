#pragma once

#include "apps/demo/shop/Basket.h"
#include "apps/demo/shop/screens/ShopScreen.h"
#include "platform/qt/QtPopupSwitch.h"

namespace kifo::shop {

class PillButton;

/// What is in the basket, what it costs, and the way to order it.
class BasketScreen : public ShopScreen {
  Q_OBJECT

 public:
  explicit BasketScreen(Basket& basket, QWidget* parent = nullptr);

 private:
  void refresh();
  /// Orders and pays. No popup shows while the payment is under way.
  void order();
  void paid();
  QWidget* rowFor(const Basket::Entry& entry) const;

  Basket& basket_;
  CardFrame* const card_;
  QVBoxLayout* const rows_;
  QLabel* const total_;
  PillButton* const order_;
  QtPopupSwitch popups_;
};

}  // namespace kifo::shop
