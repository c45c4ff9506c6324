#include "apps/demo/kiosk/KioskTour.h"

#include <QTest>
#include <cstdio>
#include <utility>

#include "apps/demo/shop/tour/Visit.h"

namespace kifo::kiosk {
namespace {

using shop::Visit;

void menu(Visit& visit) {
  visit.keep("01-menu");
  visit.expectEvent({{"name", "page_in"}, {"page_name", "MenuScreen"}});
}

void popup(Visit& visit) {
  visit.tap("Add Flat white");
  visit.waitForOverlay();
  visit.expectEvent({{"name", "in_app_opened"}, {"code", "CROISSANT-1"}});
  visit.keep("02-popup");
  visit.tap("Yes, please");
  visit.waitForNoOverlay();
  visit.expectEvent({{"name", "InAppMessageResponse"},
                     {"code", "CROISSANT-1"},
                     {"responseText", "Yes, please"},
                     {"page_name", "MenuScreen"}});
}

void choosing(Visit& visit) {
  visit.tap("Cold");
  visit.tap("Add Lemonade");
  visit.keep("03-cold");
  visit.tap("Bakery");
  visit.keep("04-bakery");
  visit.tap("Lunch");
  visit.keep("05-lunch");
  visit.expectEvent({{"name", "item_added"}, {"product", "lemonade"}, {"cents", 350}});
}

void orderByKeys(Visit& visit) {
  visit.tabTo("See my order");
  visit.keep("06-focus");
  visit.press(Qt::Key_Space);
  visit.waitFor("Pay by card");
  visit.expectEvent({{"name", "page_out"}, {"page_name", "MenuScreen"}});
  visit.expectEvent({{"name", "page_in"}, {"page_name", "BasketScreen"}});
  visit.tap("One Flat white more");
  visit.tap("Take away");
  visit.keep("07-order");
}

void payment(Visit& visit) {
  visit.tap("Pay by card");
  visit.waitForOverlay();
  visit.save("08-paying");
  visit.expectEvent({{"name", "page_in"}, {"page_name", "ThanksScreen"}});
  visit.expectEvent({{"name", "order_paid"}, {"takenAway", true}, {"items", 4}});
}

void rating(Visit& visit) {
  visit.expectEvent({{"name", "in_app_opened"}, {"code", "KIOSK-RATING-1"}});
  visit.waitForOverlay();
  visit.keep("09-rating");
  visit.tap("Quick");
  visit.keep("10-rating-chosen");
  visit.tap("Send");
  visit.waitForNoOverlay();
  visit.expectEvent({{"name", "InAppMessageResponse"},
                     {"code", "KIOSK-RATING-1"},
                     {"responseId", "3"},
                     {"page_name", "ThanksScreen"}});
  visit.keep("11-thanks");
}

void nextCustomer(Visit& visit) {
  visit.tap("New order");
  visit.waitFor("Add Flat white");
  visit.keep("12-next-customer");
}

}  // namespace

bool runTour(QQuickWindow& window, testing::LocalServer& server, const QString& folder) {
  if (!QTest::qWaitForWindowExposed(&window)) return false;
  Visit visit(
      window, [&window] { return window.grabWindow(); }, server, folder);
  const std::pair<const char*, void (*)(Visit&)> stops[]{{"The menu", menu},
                                                         {"A popup in the scene", popup},
                                                         {"Choosing", choosing},
                                                         {"The order, by keys", orderByKeys},
                                                         {"The payment's alert", payment},
                                                         {"A rating", rating},
                                                         {"The next customer", nextCustomer}};
  int failures = 0;
  for (const auto& [name, run] : stops)
    failures += shop::visitStop(name, [&] { run(visit); }) ? 0 : 1;
  std::printf("The server received %zu events; %d of the %zu stops went wrong.\n",
              visit.eventCount(), failures, std::size(stops));
  return failures == 0;
}

}  // namespace kifo::kiosk
