#include <QWidget>
#include <algorithm>

#include "apps/demo/shop/tour/Visit.h"

namespace kifo::shop {
namespace {

/// A card fades in, and has no effect any more once it is there.
bool hasFadedIn(const Visit& visit) {
  const auto alert = visit.overlay();
  if (alert == nullptr) return false;
  const auto cards = alert->object()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  return std::ranges::all_of(cards,
                             [](const QWidget* card) { return card->graphicsEffect() == nullptr; });
}

void waitForAlert(Visit& visit) {
  visit.waitForOverlay();
  visit.waitUntil([&] { return hasFadedIn(visit); }, "the alert does not fade in");
}

/// Clicks the tile and keeps a picture of its alert. What moves or counts on it may go on.
void open(Visit& visit, const QString& tile, const QString& picture) {
  visit.click(tile);
  waitForAlert(visit);
  visit.save(picture);
}

/// Opens, keeps and closes by the button `answer`.
void see(Visit& visit, const QString& tile, const QString& picture, const QString& answer) {
  open(visit, tile, picture);
  visit.click(answer);
  visit.waitForNoOverlay();
}

void fields(Visit& visit) {
  open(visit, "Fields", "49-alert-fields");
  visit.type("12 Harbour Street");
  visit.press(Qt::Key_Tab, 2);
  visit.type("Ring twice");
  visit.save("50-alert-fields-typed");
  // Enter breaks the line in the third field; from the second it is the first button.
  visit.press(Qt::Key_Backtab);
  visit.press(Qt::Key_Return);
  visit.waitForNoOverlay();
}

void timed(Visit& visit) {
  see(visit, "A countdown", "51-alert-countdown", "Stay signed in");
  open(visit, "Wait", "47-alert-wait");
  visit.waitFor("Reserve it");
  visit.save("52-alert-wait-is-over");
  visit.tabTo("Reserve it");
  visit.press(Qt::Key_Escape);
  visit.waitForNoOverlay();
}

void buttonsThatStay(Visit& visit) {
  open(visit, "Buttons that stay", "59-alert-staying");
  visit.click("One more");
  visit.click("One more");
  visit.click("That will do");
  visit.waitForNoOverlay();
}

void twoAtOnce(Visit& visit) {
  open(visit, "One over another", "60-alert-below");
  visit.click("Delete my account");
  visit.waitFor("Stay");
  waitForAlert(visit);
  visit.save("61-alert-above");
  visit.press(Qt::Key_Escape);
  visit.waitFor("Delete my account");
  visit.press(Qt::Key_Escape);
  visit.waitForNoOverlay();
}

}  // namespace

void visitAlerts(Visit& visit) {
  visit.save("40-alerts");
  see(visit, "Success", "41-alert-success", "Track it");
  see(visit, "Error", "42-alert-error", "Cancel");
  see(visit, "Notice", "43-alert-notice", "I see");
  see(visit, "Warning", "44-alert-warning", "Hurry");
  see(visit, "Info", "45-alert-info", "Close");
  see(visit, "Edit", "46-alert-edit", "Nobody");
  see(visit, "Question", "48-alert-question-in-a-row", "Keep it");
  fields(visit);
  timed(visit);
  see(visit, "A list", "53-alert-list", "Done");
  see(visit, "A view of one's own", "54-alert-own-view", "Not today");
  see(visit, "Own colours", "55-alert-own-colours", "Sleep well");
  see(visit, "A long text", "56-alert-long-text", "Leave it");
  see(visit, "At the upper edge", "57-alert-upper-edge", "Close");
  see(visit, "On a spring", "58-alert-spring", "Close");
  buttonsThatStay(visit);
  twoAtOnce(visit);
  visit.click("Over a dark page");
  see(visit, "Success", "62-alert-dark-page", "Close");
  see(visit, "Own colours", "63-alert-dark-card", "Sleep well");
  visit.click("Over a dark page");
}

}  // namespace kifo::shop
