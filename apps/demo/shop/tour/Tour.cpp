#include "apps/demo/shop/tour/Tour.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <cstdio>
#include <utility>

#include "apps/demo/shop/tour/AlertsTour.h"
#include "apps/demo/shop/tour/PushTour.h"

namespace kifo::shop {

Tour::Tour(QWidget& window, testing::LocalServer& server, PushTourDesktop& desktop,
           const QString& folder)
    : window_(window), visitor_(window, folder), ear_(server), desktop_(desktop) {}

bool Tour::run() {
  using Stop = std::pair<const char*, bool (Tour::*)()>;
  constexpr Stop stops[]{{"The front page", &Tour::frontPage},
                         {"A plain popup", &Tour::plainPopup},
                         {"An emoji rating", &Tour::emoji},
                         {"A coupon", &Tour::coupon},
                         {"A score", &Tour::score},
                         {"An open-ended question", &Tour::openEnded},
                         {"A survey", &Tour::survey},
                         {"A long survey", &Tour::longSurvey},
                         {"A survey from right to left", &Tour::rightToLeft},
                         {"A carousel", &Tour::carousel},
                         {"The alerts", &Tour::alerts},
                         {"The pushes", &Tour::pushes},
                         {"A small window", &Tour::smallWindow}};
  int failures = 0;
  for (const auto& [name, stop] : stops) {
    const bool isGood = (this->*stop)();
    std::printf("%s  %s\n", isGood ? "ok   " : "WRONG", name);
    std::fflush(stdout);
    if (!isGood) ++failures;
  }
  std::printf("The server heard %zu events; %d of the %zu stops went wrong.\n", ear_.count(),
              failures, std::size(stops));
  return failures == 0;
}

bool Tour::frontPage() {
  if (!QTest::qWaitForWindowExposed(&window_)) return false;
  visitor_.waitForStillness();
  return visitor_.picture("01-home") &&
         ear_.hears({{"name", "page_in"}, {"page_name", "HomeScreen"}});
}

bool Tour::plainPopup() {
  if (!open("See the autumn offer", "POPUP", "AUTUMN-1", "02-popup")) return false;
  if (!visitor_.pointAt("Show me the lamp") || !keep("03-popup-hover")) return false;
  // The keyboard alone will do.
  if (!visitor_.tabTo("Show me the lamp") || !keep("04-popup-focus")) return false;
  visitor_.press(Qt::Key_Space);
  const bool isHeard = answered("AUTUMN-1", {{"responseType", "BUTTON"},
                                             {"responseId", "lampshow"},
                                             {"responseText", "Show me the lamp"},
                                             {"page_name", "HomeScreen"}});
  visitor_.waitForStillness();
  return isHeard && ear_.hears({{"name", "page_out"}, {"page_name", "HomeScreen"}}) &&
         visitor_.picture("05-product");
}

bool Tour::emoji() {
  if (!open("Rate it", "EMOJI", "RATE-1", "06-emoji")) return false;
  if (!visitor_.click("I love it") || !keep("07-emoji-chosen")) return false;
  if (!visitor_.tabTo("What makes it so?")) return false;
  visitor_.type("The light is like honey 🍯");
  if (!keep("08-emoji-typed") || !visitor_.click("Send my rating")) return false;
  return answered("RATE-1", {{"responseType", "EMOJI"},
                             {"responseId", "3"},
                             {"responseText", nullptr},
                             {"defaultFreeText", "The light is like honey 🍯"}});
}

bool Tour::coupon() {
  if (!visitor_.click("Add to basket") || !visitor_.click("Add to basket")) return false;
  if (!visitor_.click("Basket")) return false;
  visitor_.waitForStillness();
  if (!visitor_.picture("09-basket")) return false;
  if (!open("Get a coupon", "POPUP", "COUPON-10", "10-coupon")) return false;
  if (!visitor_.click("Copy the code") || !keep("11-coupon-copied")) return false;
  if (QGuiApplication::clipboard()->text() != QLatin1String("NOOK-10-AUTUMN")) {
    std::printf("  wrong: the clipboard does not hold the code\n");
    return false;
  }
  visitor_.press(Qt::Key_Escape);
  return answered("COUPON-10", {{"responseType", "REJECT"}, {"responseId", ""}});
}

bool Tour::score() {
  if (!open("Place the order", "SCORE", "SCORE-10", "12-score")) return false;
  if (!visitor_.tabTo("How likely are you to send a friend here?")) return false;
  visitor_.press(Qt::Key_Right, 9);
  if (!keep("13-score-nine") || !visitor_.tabTo("Why this score?")) return false;
  visitor_.type("It came with a ribbon");
  if (!keep("14-score-typed") || !visitor_.click("Send")) return false;
  return answered("SCORE-10", {{"responseType", "SCORE"},
                               {"sliderValue", 9},
                               {"defaultFreeText", "It came with a ribbon"},
                               {"page_name", "BasketScreen"}});
}

bool Tour::openEnded() {
  if (!visitor_.click("Account")) return false;
  visitor_.waitForStillness();
  if (!visitor_.picture("15-account")) return false;
  if (!open("Write to us", "OPEN_ENDED", "OPEN-1", "16-open-ended")) return false;
  if (!visitor_.tabTo("Two lines are plenty")) return false;
  visitor_.type("More chairs, fewer clocks.");
  if (!keep("17-open-ended-typed") || !visitor_.tabTo("Send it")) return false;
  visitor_.press(Qt::Key_Space);
  return answered("OPEN-1", {{"responseType", "OPEN_ENDED"},
                             {"defaultFreeText", "More chairs, fewer clocks."}});
}

bool Tour::survey() {
  if (!open("Answer", "SURVEY", "SURVEY-4", "18-survey")) return false;
  if (visitor_.isShown("Which way was it?")) {
    std::printf("  wrong: the free text is asked for before it is wanted\n");
    return false;
  }
  if (!visitor_.click("I read about you") || !keep("19-survey-chosen")) return false;
  if (!visitor_.tabTo("I read about you")) return false;
  visitor_.press(Qt::Key_Down);
  visitor_.press(Qt::Key_Space);
  if (!keep("20-survey-other") || !visitor_.tabTo("Which way was it?")) return false;
  visitor_.type("A cat led me");
  if (!keep("21-survey-typed") || !visitor_.click("Answer")) return false;
  return answered("SURVEY-4", {{"responseType", "CHOICE"},
                               {"responseId", "other"},
                               {"responseText", "In another way"},
                               {"defaultFreeText", "A cat led me"}});
}

bool Tour::longSurvey() {
  if (!open("Choose a style", "SURVEY", "SURVEY-20", "22-survey-long")) return false;
  if (!visitor_.turnWheel("Japandi", -3) || !keep("23-survey-long-scrolled")) return false;
  if (!visitor_.tabTo("Scandinavian")) return false;
  visitor_.press(Qt::Key_Down, 19);
  visitor_.press(Qt::Key_Space);
  if (!keep("24-survey-long-last") || !visitor_.click("This one")) return false;
  return answered("SURVEY-20", {{"responseType", "CHOICE"},
                                {"responseId", "20"},
                                {"responseText", "Whatever my cat allows"}});
}

bool Tour::rightToLeft() {
  if (!open("افتح", "SURVEY", "SURVEY-AR", "25-right-to-left")) return false;
  if (!visitor_.click("أخبرني صديق") || !keep("26-right-to-left-chosen")) return false;
  if (!visitor_.click("إرسال")) return false;
  return answered("SURVEY-AR", {{"responseType", "CHOICE"}, {"responseText", "أخبرني صديق"}});
}

bool Tour::carousel() {
  if (!visitor_.click("Shop")) return false;
  if (!open("Look around a room", "POPUP", "ROOM-3", "27-carousel")) return false;
  QTest::qWait(2100);
  if (!keep("28-carousel-next") || !visitor_.click("Close")) return false;
  return answered("ROOM-3", {{"responseType", "REJECT"}, {"responseText", nullptr}});
}

bool Tour::alerts() {
  if (!visitor_.click("Alerts")) return false;
  visitor_.waitForStillness();
  if (!ear_.hears({{"name", "page_in"}, {"page_name", "AlertsScreen"}})) return false;
  const bool isGood = AlertsTour(visitor_).run();
  return visitor_.click("Shop") && isGood;
}

bool Tour::pushes() {
  const bool isGood = PushTour(visitor_, ear_, desktop_).run();
  return visitor_.click("Shop") && isGood;
}

bool Tour::smallWindow() {
  window_.resize(430, 720);
  visitor_.waitForStillness();
  if (!visitor_.picture("29-small-home") || !visitor_.click("See the autumn offer") ||
      !visitor_.waitForPopup() || !keep("30-small-popup")) {
    return false;
  }
  if (!visitor_.click("To my basket") || !visitor_.waitForNoPopup()) return false;
  visitor_.waitForStillness();
  return ear_.hears({{"name", "InAppMessageResponse"}, {"responseText", "To my basket"}}) &&
         visitor_.picture("31-small-basket");
}

bool Tour::open(const QString& button, const char* type, const char* code, const QString& picture) {
  if (!visitor_.click(button) || !visitor_.waitForPopup()) return false;
  return ear_.hears({{"name", "in_app_opened"}, {"code", code}, {"type", type}}) && keep(picture);
}

bool Tour::answered(const char* code, nlohmann::json answer) {
  answer["name"] = "InAppMessageResponse";
  answer["code"] = code;
  return visitor_.waitForNoPopup() && ear_.hears(answer);
}

bool Tour::keep(const QString& picture) {
  visitor_.waitForStillness();
  return visitor_.picture(picture);
}

}  // namespace kifo::shop
