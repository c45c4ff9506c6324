#include "apps/demo/shop/tour/PushTour.h"

#include <QTest>
#include <cstdio>

#include "apps/demo/shop/tour/Ear.h"
#include "apps/demo/shop/tour/PushTourDesktop.h"
#include "apps/demo/shop/tour/Visitor.h"

namespace kifo::shop {
namespace {

constexpr int kPatience = 20000;  // milliseconds
constexpr int kFirstButton = 2;   // After the key and the text of the tap on the body.

bool complain(const char* what) {
  std::printf("  wrong: %s\n", what);
  return false;
}

}  // namespace

bool PushTour::run() {
  if (desktop_.address().isEmpty()) {
    std::printf("  skipped, no session bus\n");
    return true;
  }
  if (!visitor_.click("Pushes")) return false;
  visitor_.waitForStillness();
  return visitor_.picture("70-pushes") && push() && click() && carousel();
}

bool PushTour::push() {
  if (!visitor_.click("Send me a push")) return false;
  if (!QTest::qWaitFor([this] { return !desktop_.shown().empty(); }, kPatience)) {
    return complain("the desktop was not asked to show the push");
  }
  const PushTourDesktop::Shown& shown = desktop_.shown().back();
  if (shown.title != QLatin1String("Three things for the evening") ||
      !shown.actions.contains(QLatin1String("Show me the lamp")) ||
      !shown.actions.contains(QLatin1String("To my basket"))) {
    return complain("the desktop shows another title or other buttons");
  }
  if (!shown.hints.contains(QStringLiteral("image-path"))) {
    return complain("the desktop shows the push without its picture");
  }
  visitor_.waitForStillness();
  return ear_.hears({{"name", "push_notification_received"}}) &&
         visitor_.picture("71-push-arrived");
}

bool PushTour::click() {
  desktop_.invoke(desktop_.shown().back().actions.value(kFirstButton));
  return ear_.hears({{"name", "push_notification_clicked"},
                     {"responseType", "BUTTON"},
                     {"responseText", "Show me the lamp"}}) &&
         visitor_.waitFor("Go there");
}

bool PushTour::carousel() {
  // Back from the first picture is the last; on from there, the first again.
  if (!visitor_.click("Previous image") || !visitor_.waitFor("Image 3 of 3")) return false;
  visitor_.waitForStillness();
  if (!visitor_.picture("72-push-carousel")) return false;
  return visitor_.click("Next image") && visitor_.waitFor("Image 1 of 3");
}

}  // namespace kifo::shop
