#pragma once

#include "apps/demo/shop/Catalogue.h"
#include "apps/demo/shop/screens/ShopScreen.h"

namespace kifo::shop {

/// The shop's front: the season's banner and the shelf.
class HomeScreen : public ShopScreen {
  Q_OBJECT

 public:
  explicit HomeScreen(QWidget* parent = nullptr);

 Q_SIGNALS:
  void productChosen(const kifo::shop::Product& product);
};

}  // namespace kifo::shop
