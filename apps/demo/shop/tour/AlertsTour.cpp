#include "apps/demo/shop/tour/AlertsTour.h"

#include "apps/demo/shop/tour/Visitor.h"

namespace kifo::shop {

bool AlertsTour::run() {
  if (!visitor_.picture("40-alerts")) return false;
  return styles() && fields() && countdown() && wait() && contents() && twoAtOnce() && darkPage();
}

bool AlertsTour::styles() {
  return visit("Success", "41-alert-success", "Track it") &&
         visit("Error", "42-alert-error", "Cancel") &&
         visit("Notice", "43-alert-notice", "I see") &&
         visit("Warning", "44-alert-warning", "Hurry") && visit("Info", "45-alert-info", "Close") &&
         visit("Edit", "46-alert-edit", "Nobody") &&
         visit("Question", "48-alert-question-in-a-row", "Keep it");
}

bool AlertsTour::fields() {
  if (!open("Fields", "49-alert-fields")) return false;
  visitor_.type("12 Harbour Street");
  visitor_.press(Qt::Key_Tab, 2);
  visitor_.type("Ring twice");
  if (!visitor_.picture("50-alert-fields-typed")) return false;
  // Enter breaks the line in the third field; from the second it is the first button.
  visitor_.press(Qt::Key_Backtab);
  visitor_.press(Qt::Key_Return);
  return visitor_.waitForNoAlert();
}

bool AlertsTour::countdown() {
  if (!open("A countdown", "51-alert-countdown")) return false;
  return visitor_.click("Stay signed in") && visitor_.waitForNoAlert();
}

bool AlertsTour::wait() {
  if (!open("Wait", "47-alert-wait") || !visitor_.waitFor("Reserve it")) return false;
  if (!visitor_.picture("52-alert-wait-is-over") || !visitor_.tabTo("Reserve it")) return false;
  visitor_.press(Qt::Key_Escape);
  return visitor_.waitForNoAlert();
}

bool AlertsTour::contents() {
  if (!visit("A list", "53-alert-list", "Done") ||
      !visit("A view of one's own", "54-alert-own-view", "Not today") ||
      !visit("Own colours", "55-alert-own-colours", "Sleep well") ||
      !visit("A long text", "56-alert-long-text", "Leave it") ||
      !visit("At the upper edge", "57-alert-upper-edge", "Close") ||
      !visit("On a spring", "58-alert-spring", "Close")) {
    return false;
  }
  if (!open("Buttons that stay", "59-alert-staying")) return false;
  return visitor_.click("One more") && visitor_.click("One more") &&
         visitor_.click("That will do") && visitor_.waitForNoAlert();
}

bool AlertsTour::twoAtOnce() {
  if (!open("One over another", "60-alert-below") || !visitor_.click("Delete my account") ||
      !visitor_.waitFor("Stay") || !visitor_.waitForAlert()) {
    return false;
  }
  if (!visitor_.picture("61-alert-above")) return false;
  visitor_.press(Qt::Key_Escape);
  if (!visitor_.waitFor("Delete my account")) return false;
  visitor_.press(Qt::Key_Escape);
  return visitor_.waitForNoAlert();
}

bool AlertsTour::darkPage() {
  return visitor_.click("Over a dark page") && visit("Success", "62-alert-dark-page", "Close") &&
         visit("Own colours", "63-alert-dark-card", "Sleep well") &&
         visitor_.click("Over a dark page");
}

bool AlertsTour::open(const QString& tile, const QString& picture) {
  return visitor_.click(tile) && visitor_.waitForAlert() && visitor_.picture(picture);
}

bool AlertsTour::visit(const QString& tile, const QString& picture, const QString& answer) {
  return open(tile, picture) && visitor_.click(answer) && visitor_.waitForNoAlert();
}

}  // namespace kifo::shop
