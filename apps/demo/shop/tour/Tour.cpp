#include "apps/demo/shop/tour/Tour.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <cstdio>
#include <functional>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "apps/demo/shop/tour/PushTourDesktop.h"
#include "apps/demo/shop/tour/Visit.h"

namespace kifo::shop {
namespace {

/// Clicks `button`, waits for the popup and keeps its picture; the server must hear of its opening.
void open(Visit& visit, const QString& button, const char* type, const char* code,
          const QString& picture) {
  visit.click(button);
  visit.waitForOverlay();
  visit.expectEvent({{"name", "in_app_opened"}, {"code", code}, {"type", type}});
  visit.keep(picture);
}

/// Once the popup has closed, the server must have received this answer to the campaign `code`.
void expectAnswer(Visit& visit, const char* code, Value::Map answer) {
  answer["name"] = "InAppMessageResponse";
  answer["code"] = code;
  visit.waitForNoOverlay();
  visit.expectEvent(answer);
}

void frontPage(Visit& visit) {
  visit.keep("01-home");
  visit.expectEvent({{"name", "page_in"}, {"page_name", "HomeScreen"}});
}

void plainPopup(Visit& visit) {
  open(visit, "See the autumn offer", "POPUP", "AUTUMN-1", "02-popup");
  visit.pointAt("Show me the lamp");
  visit.keep("03-popup-hover");
  // The keyboard alone will do.
  visit.tabTo("Show me the lamp");
  visit.keep("04-popup-focus");
  visit.press(Qt::Key_Space);
  expectAnswer(visit, "AUTUMN-1",
               {{"responseType", "BUTTON"},
                {"responseId", "lampshow"},
                {"responseText", "Show me the lamp"},
                {"page_name", "HomeScreen"}});
  visit.expectEvent({{"name", "page_out"}, {"page_name", "HomeScreen"}});
  visit.keep("05-product");
}

void emoji(Visit& visit) {
  open(visit, "Rate it", "EMOJI", "RATE-1", "06-emoji");
  visit.click("I love it");
  visit.keep("07-emoji-chosen");
  visit.tabTo("What makes it so?");
  visit.type("The light is like honey 🍯");
  visit.keep("08-emoji-typed");
  visit.click("Send my rating");
  expectAnswer(visit, "RATE-1",
               {{"responseType", "EMOJI"},
                {"responseId", "3"},
                {"responseText", nullptr},
                {"defaultFreeText", "The light is like honey 🍯"}});
}

void coupon(Visit& visit) {
  visit.click("Add to basket");
  visit.click("Add to basket");
  visit.click("Basket");
  visit.keep("09-basket");
  open(visit, "Get a coupon", "POPUP", "COUPON-10", "10-coupon");
  visit.click("Copy the code");
  visit.keep("11-coupon-copied");
  if (QGuiApplication::clipboard()->text() != QLatin1String("NOOK-10-AUTUMN")) {
    throw Visit::NotUsable("the clipboard does not hold the code");
  }
  visit.press(Qt::Key_Escape);
  expectAnswer(visit, "COUPON-10", {{"responseType", "REJECT"}, {"responseId", ""}});
}

/// The campaign of the order becomes due while the shop has paused popups for the payment.
void payment(Visit& visit) {
  visit.click("Place the order");
  const auto isHeldBack = [] {
    return Kifo::statistics().sinceInitialize[Counter::popupsPaused] > 0;
  };
  if (!QTest::qWaitFor(isHeldBack) || !Kifo::popupsPaused()) {
    throw Visit::NotUsable("no popup was held back during the payment");
  }
  visit.save("12-payment");
  visit.waitForOverlay();
  if (Kifo::popupsPaused()) throw Visit::NotUsable("a popup shows during the payment");
  visit.expectEvent({{"name", "in_app_opened"}, {"code", "SCORE-10"}, {"type", "SCORE"}});
}

void score(Visit& visit) {
  visit.keep("12-score");
  visit.tabTo("How likely are you to send a friend here?");
  visit.press(Qt::Key_Right, 9);
  visit.keep("13-score-nine");
  visit.tabTo("Why this score?");
  visit.type("It came with a ribbon");
  visit.keep("14-score-typed");
  visit.click("Send");
  expectAnswer(visit, "SCORE-10",
               {{"responseType", "SCORE"},
                {"sliderValue", 9},
                {"defaultFreeText", "It came with a ribbon"},
                {"page_name", "BasketScreen"}});
}

void openEnded(Visit& visit) {
  visit.click("Account");
  visit.keep("15-account");
  open(visit, "Write to us", "OPEN_ENDED", "OPEN-1", "16-open-ended");
  visit.tabTo("Two lines are plenty");
  visit.type("More chairs, fewer clocks.");
  visit.keep("17-open-ended-typed");
  visit.tabTo("Send it");
  visit.press(Qt::Key_Space);
  expectAnswer(visit, "OPEN-1",
               {{"responseType", "OPEN_ENDED"}, {"defaultFreeText", "More chairs, fewer clocks."}});
}

void survey(Visit& visit) {
  open(visit, "Answer", "SURVEY", "SURVEY-4", "18-survey");
  if (visit.named("Which way was it?") != nullptr) {
    throw Visit::NotUsable("the free text is asked for before it is wanted");
  }
  visit.click("I read about you");
  visit.keep("19-survey-chosen");
  visit.tabTo("I read about you");
  visit.press(Qt::Key_Down);
  visit.press(Qt::Key_Space);
  visit.keep("20-survey-other");
  visit.tabTo("Which way was it?");
  visit.type("A cat led me");
  visit.keep("21-survey-typed");
  visit.click("Answer");
  expectAnswer(visit, "SURVEY-4",
               {{"responseType", "CHOICE"},
                {"responseId", "other"},
                {"responseText", "In another way"},
                {"defaultFreeText", "A cat led me"}});
}

void longSurvey(Visit& visit) {
  open(visit, "Choose a style", "SURVEY", "SURVEY-20", "22-survey-long");
  visit.turnWheel("Japandi", -3);
  visit.keep("23-survey-long-scrolled");
  visit.tabTo("Scandinavian");
  visit.press(Qt::Key_Down, 19);
  visit.press(Qt::Key_Space);
  visit.keep("24-survey-long-last");
  visit.click("This one");
  expectAnswer(visit, "SURVEY-20",
               {{"responseType", "CHOICE"},
                {"responseId", "20"},
                {"responseText", "Whatever my cat allows"}});
}

void rightToLeft(Visit& visit) {
  open(visit, "افتح", "SURVEY", "SURVEY-AR", "25-right-to-left");
  visit.click("أخبرني صديق");
  visit.keep("26-right-to-left-chosen");
  visit.click("إرسال");
  expectAnswer(visit, "SURVEY-AR", {{"responseType", "CHOICE"}, {"responseText", "أخبرني صديق"}});
}

void carousel(Visit& visit) {
  visit.click("Shop");
  open(visit, "Look around a room", "POPUP", "ROOM-3", "27-carousel");
  QTest::qWait(2100);
  visit.keep("28-carousel-next");
  visit.click("Close");
  expectAnswer(visit, "ROOM-3", {{"responseType", "REJECT"}, {"responseText", nullptr}});
}

void alerts(Visit& visit) {
  visit.click("Alerts");
  visit.waitForStillness();
  visit.expectEvent({{"name", "page_in"}, {"page_name", "AlertsScreen"}});
  visitAlerts(visit);
}

void smallWindow(Visit& visit, QWidget& window) {
  visit.click("Shop");
  window.resize(430, 720);
  visit.keep("29-small-home");
  visit.click("See the autumn offer");
  visit.waitForOverlay();
  visit.keep("30-small-popup");
  visit.click("To my basket");
  visit.waitForNoOverlay();
  visit.expectEvent({{"name", "InAppMessageResponse"}, {"responseText", "To my basket"}});
  visit.keep("31-small-basket");
}

}  // namespace

bool runTour(QWidget& window, testing::LocalServer& server, PushTourDesktop& desktop,
             const QString& folder) {
  if (!QTest::qWaitForWindowExposed(&window)) return false;
  Visit visit(window, server, folder);
  const std::pair<const char*, std::function<void()>> stops[]{
      {"The front page", [&] { frontPage(visit); }},
      {"A plain popup", [&] { plainPopup(visit); }},
      {"An emoji rating", [&] { emoji(visit); }},
      {"A coupon", [&] { coupon(visit); }},
      {"A payment, during which popups wait", [&] { payment(visit); }},
      {"A score", [&] { score(visit); }},
      {"An open-ended question", [&] { openEnded(visit); }},
      {"A survey", [&] { survey(visit); }},
      {"A long survey", [&] { longSurvey(visit); }},
      {"A survey from right to left", [&] { rightToLeft(visit); }},
      {"A carousel", [&] { carousel(visit); }},
      {"The alerts", [&] { alerts(visit); }},
      {"The pushes", [&] { visitPushes(visit, desktop); }},
      {"A small window", [&] { smallWindow(visit, window); }}};
  int failures = 0;
  for (const auto& [name, run] : stops) failures += visitStop(name, run) ? 0 : 1;
  std::printf("The server received %zu events; %d of the %zu stops went wrong.\n",
              visit.eventCount(), failures, std::size(stops));
  return failures == 0;
}

}  // namespace kifo::shop
