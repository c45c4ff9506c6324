#include "apps/demo/shop/screens/HomeScreen.h"

#include "apps/demo/shop/widgets/Banner.h"
#include "apps/demo/shop/widgets/ProductCard.h"
#include "apps/demo/shop/widgets/Shelf.h"

namespace kifo::shop {

HomeScreen::HomeScreen(QWidget* parent) : ShopScreen(parent) {
  auto* banner = new Banner;
  auto* shelf = new Shelf;
  column()->addWidget(banner);
  column()->addSpacing(10);
  column()->addWidget(headline(tr("On the shelf this week")));
  column()->addWidget(shelf);
  column()->addStretch();
  for (const Product& product : catalogue()) {
    auto* card = new ProductCard(product);
    shelf->add(card);
    connect(card, &ProductCard::clicked, this, [this, &product] { Q_EMIT productChosen(product); });
  }
  connect(banner, &Banner::offerWanted, this, [this] { send("autumn_offer_wanted"); });
  connect(banner, &Banner::roomWanted, this, [this] { send("room_wanted"); });
}

}  // namespace kifo::shop
