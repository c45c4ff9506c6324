#include <cstdio>

#include "apps/demo/shop/tour/PushTourDesktop.h"
#include "apps/demo/shop/tour/Visit.h"

namespace kifo::shop {
namespace {

constexpr int kFirstButton = 2;  // After the key and the text of the tap on the body.

void expect(bool isSo, const char* otherwise) {
  if (!isSo) throw Visit::NotUsable(otherwise);
}

void push(Visit& visit, PushTourDesktop& desktop) {
  visit.click("Send me a push");
  visit.waitUntil([&] { return !desktop.shown().empty(); },
                  "the desktop was not asked to show the push");
  const PushTourDesktop::Shown& shown = desktop.shown().back();
  expect(shown.title == QLatin1String("Three things for the evening"),
         "the desktop shows another title");
  expect(shown.actions.contains(QLatin1String("Show me the lamp")) &&
             shown.actions.contains(QLatin1String("To my basket")),
         "the desktop shows other buttons");
  expect(shown.hints.contains(QStringLiteral("image-path")),
         "the desktop shows the push without its picture");
  visit.expectEvent({{"name", "push_notification_received"}});
  visit.keep("71-push-arrived");
}

void clickIt(Visit& visit, PushTourDesktop& desktop) {
  desktop.invoke(desktop.shown().back().actions.value(kFirstButton));
  visit.expectEvent({{"name", "push_notification_clicked"},
                     {"responseType", "BUTTON"},
                     {"responseText", "Show me the lamp"}});
  visit.waitFor("Go there");
}

void leafThroughPictures(Visit& visit) {
  // Back from the first picture is the last; on from there, the first again.
  visit.click("Previous image");
  visit.waitFor("Image 3 of 3");
  visit.keep("72-push-carousel");
  visit.click("Next image");
  visit.waitFor("Image 1 of 3");
}

}  // namespace

void visitPushes(Visit& visit, PushTourDesktop& desktop) {
  if (desktop.address().isEmpty()) {
    std::printf("  skipped, no session bus\n");
    return;
  }
  visit.click("Pushes");
  visit.keep("70-pushes");
  push(visit, desktop);
  clickIt(visit, desktop);
  leafThroughPictures(visit);
}

}  // namespace kifo::shop
