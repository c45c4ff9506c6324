#include "tests/views/Campaigns.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {

std::vector<QPointer<QObject>> alerts;

}  // namespace kifo::testing

/// What the SDK announces. Qt's own function, for which this one stands in, passes nothing on for
/// as long as no assistive technology is connected.
void QAccessible::updateAccessibility(QAccessibleEvent* event) {
  if (event->type() == QAccessible::Alert) kifo::testing::alerts.emplace_back(event->object());
}

namespace kifo::testing {
namespace {

using AccessibilityTest = PopupTest;

TEST_P(AccessibilityTest, ThePopupIsAnnouncedOnce) {
  alerts.clear();
  present("POPUP");
  settle();
  ASSERT_EQ(alerts.size(), 1u);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(alerts[0]), user.overlay());
}

void expectNamed(QAccessibleInterface* control) {
  if (control->state().invisible) return;
  if (control->state().focusable && control->role() != QAccessible::Dialog) {
    const std::string name = control->object()->objectName().toStdString();
    EXPECT_FALSE(control->text(QAccessible::Name).trimmed().isEmpty()) << name;
    EXPECT_NE(control->role(), QAccessible::Client) << name;
  }
  for (int i = 0; i < control->childCount(); ++i) expectNamed(control->child(i));
}

TEST_P(AccessibilityTest, NothingThatTakesTheFocusIsWithoutNameOrRole) {
  for (const Campaign& campaign : campaigns(fake)) {
    SCOPED_TRACE(campaign.name);
    toolkit->present(campaign.request, options);
    expectNamed(user.overlay());
    dismiss();
  }
}

TEST_P(AccessibilityTest, OptionsWithoutATextAreNumberedAndABodyWithAnActionIsALink) {
  std::vector<std::string> links;
  request->actionBodyItem = [&](auto button) { links.push_back(*button->action->link); };
  campaign("EMOJI");
  request->preferences.choices = {option("a", ""), option("b", " ")};
  submitButton("");
  bodyAction("app://offers");
  present();
  EXPECT_EQ(piece("emojiButton", 0)->text(QAccessible::Name), "Option 1 of 2");
  EXPECT_EQ(piece("emojiButton", 1)->text(QAccessible::Name), "Option 2 of 2");
  EXPECT_EQ(text("submitButton"), "Submit");
  piece("emojiButton", 1)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(toolkit->state()->selectActionItem, request->preferences.choices[1]);
  auto* body = piece("popupView");
  EXPECT_EQ(body->role(), QAccessible::Link);
  body->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  settle();
  EXPECT_THAT(links, ElementsAre("app://offers"));
}

KIFO_ON_EACH_TOOLKIT(AccessibilityTest);

}  // namespace
}  // namespace kifo::testing
