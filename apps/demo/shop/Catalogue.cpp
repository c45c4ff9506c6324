#include "apps/demo/shop/Catalogue.h"

#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {

const std::vector<Product>& catalogue() {
  static const std::vector<Product> products{
      {"dusk-lamp", "Dusk table lamp", "Oak and linen",
       "A warm, low light for the hour before sleep. The shade is pleated by hand and the foot is "
       "turned from one piece of oak.",
       89, 4.8, ":/images/lamp.png", theme::kSand},
      {"split-leaf", "Split-leaf plant", "In a clay pot",
       "Grown slowly and sent in its own clay pot. It forgives a forgotten week and likes a bright "
       "corner without direct sun.",
       34, 4.6, ":/images/plant.png", theme::kMoss},
      {"first-cup", "First cup", "Stoneware, 350 ml",
       "Thick walls keep the coffee warm for the whole newspaper. The glaze is a little different "
       "on "
       "every one of them.",
       18, 4.9, ":/images/mug.png", theme::kBlush},
      {"reading-chair", "Reading chair", "Wool and beech",
       "Deep enough to tuck your feet in, upright enough to finish the chapter. Covers come off "
       "for "
       "the wash.",
       420, 4.7, ":/images/armchair.png", theme::kSky},
      {"slow-clock", "Slow clock", "Silent movement",
       "One hand for the hour and one that only hints at the minutes. It makes no sound at all.",
       65, 4.4, ":/images/clock.png", theme::kBlush},
      {"long-evenings", "Long evenings", "Three novels",
       "Three novels that our booksellers press into the hands of friends, tied with a cotton "
       "ribbon.",
       42, 4.5, ":/images/books.png", theme::kMoss},
  };
  return products;
}

QString priceText(int euros) {
  return QStringLiteral("€ %1").arg(euros);
}

}  // namespace kifo::shop
