// Alerts by keyboard alone.
#include "tests/alert/AlertFixture.h"
#include "tests/views/Pixels.h"

namespace kifo::testing {
namespace {

template <class Toolkit>
class AlertKeyboardTest : public AlertFixture<Toolkit> {};
TYPED_TEST_SUITE(AlertKeyboardTest, AlertToolkits);

TYPED_TEST(AlertKeyboardTest, EscapeClosesWhereTheUserIsOfferedAWayOut) {
  const KifoAppearance tappable{.hideWhenBackgroundViewIsTapped = true};
  const KifoAppearance untappable{.disableTapGesture = true,
                                  .hideWhenBackgroundViewIsTapped = true};
  const KifoAppearance closed{.showCloseButton = false};
  struct Case {
    KifoAppearance appearance;
    bool hasButton;
    KifoPopupStyle style;
    QString closeButtonTitle;
    bool closes;
  };
  constexpr auto kQuestion = KifoPopupStyle::question;
  constexpr auto kWait = KifoPopupStyle::wait;
  const std::map<const char*, Case> cases = {
      {"close button", {{}, true, kQuestion, "Close", true}},
      {"a choice that has to be made", {{}, true, kQuestion, "", false}},
      {"cross", {{}, false, kQuestion, "", true}},
      {"wait", {{}, false, kWait, "", false}},
      {"wait that can be stopped", {{}, false, kWait, "Stop", true}},
      {"tap on the background", {tappable, true, kQuestion, "", true}},
      {"taps disabled", {untappable, true, kQuestion, "", false}},
      {"no close button allowed", {closed, true, kQuestion, "Close", false}},
  };
  for (const auto& [what, each] : cases) {
    const auto alert = this->makeAlert(each.appearance);
    if (each.hasButton) alert->addButton("Yes", [] { FAIL() << "Escape is no press"; });
    alert->showTitle("Escape", "", each.style, each.closeButtonTitle);
    this->press(Qt::Key_Escape);
    EXPECT_EQ(alert->isShowing(), !each.closes) << what;
    alert->hideView();
  }
}

TYPED_TEST(AlertKeyboardTest, EnterPressesTheFirstButtonUnlessAnotherHasTheFocus) {
  for (const bool moveOn : {false, true}) {
    for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
      const auto alert = this->makeAlert();
      std::vector<QString> pressed;
      for (const QString name : {"First", "Second"}) {
        alert->addButton(name, [&pressed, name] { pressed.push_back(name); });
      }
      alert->showTitle("Enter", "", KifoPopupStyle::question);
      if (moveOn) this->press(Qt::Key_Tab);
      this->press(enter);
      EXPECT_THAT(pressed, ElementsAre(moveOn ? "Second" : "First"));
      EXPECT_FALSE(alert->isShowing());
    }
  }
}

TYPED_TEST(AlertKeyboardTest, EnterInAFieldPressesTheFirstButtonAndInATextViewBreaksTheLine) {
  const auto alert = this->makeAlert();
  auto* story = alert->addTextView();
  auto* name = alert->addTextField("Name");
  int saved = 0;
  alert->addButton("Save", [&] { ++saved; });
  alert->showEdit("Who?");
  this->user.type("a");
  this->press(Qt::Key_Return);
  this->user.type("b");
  EXPECT_EQ(TypeParam::textOf(*story), "a\nb");
  EXPECT_EQ(saved, 0);
  this->press(Qt::Key_Tab);
  this->user.type("Ada");
  this->press(Qt::Key_Return);
  EXPECT_EQ(saved, 1);
  EXPECT_EQ(name->text(), "Ada") << "the text outlives the alert's view";
}

TYPED_TEST(AlertKeyboardTest, AKeyHeldDownSinceBeforeDoesNotAnswer) {
  const auto alert = this->makeAlert();
  alert->addButton("Yes", [] { FAIL(); });
  alert->showTitle("Held", "", KifoPopupStyle::question, "No");
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
    QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(&this->toolkit.window(), &repeated);
  }
  EXPECT_TRUE(alert->isShowing());
}

TYPED_TEST(AlertKeyboardTest, TabGoesRoundInTheOrderThatIsSeen) {
  const auto alert = this->makeAlert();
  alert->addButton("Yes", [] {});
  this->toolkit.addCustomView(*alert);
  alert->addTextField("First");
  alert->addTextField("Second");
  alert->closeIcon = QIcon(QPixmap(16, 16));
  alert->showEdit("Order", "", "No");

  std::vector<QString> forth = {this->focused()};
  for (int i = 0; i < 6; ++i) {
    this->press(Qt::Key_Tab);
    forth.push_back(this->focused());
  }
  EXPECT_THAT(forth, ElementsAre("First", "Second", "Custom", "Yes", "No", "Close", "First"));
  this->press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(this->focused(), "Close");
}

TYPED_TEST(AlertKeyboardTest, TheFocusRingStandsOutFromBothSidesOfIt) {
  const auto alert = this->makeAlert();
  alert->addButton("Yes", [] {});
  alert->showInfo("Title", "Text", "No");
  this->settle();
  const QImage off = cut(this->toolkit.picture(), this->box("No"));
  this->press(Qt::Key_Tab);
  this->settle();
  expectRingStandsOut(off, cut(this->toolkit.picture(), this->box("No")));
}

TYPED_TEST(AlertKeyboardTest, AnAlertWithoutAnythingToFocusKeepsTheKeysFromTheWindow) {
  const auto alert = this->makeAlert();
  alert->showWait("One moment");
  this->user.type("abc");
  EXPECT_EQ(this->toolkit.text(), "");
  alert->hideView();
  this->user.type("abc");
  EXPECT_EQ(this->toolkit.text(), "abc");
}

TYPED_TEST(AlertKeyboardTest, TheWindowsShortcutsRestAndAnAmpersandInATitleIsNone) {
  const auto alert = this->makeAlert();
  alert->addButton("R&D", [] { FAIL(); });
  alert->showInfo("Departments", "", "OK");
  this->press(Qt::Key_D, Qt::AltModifier);
  EXPECT_TRUE(alert->isShowing());
  this->press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(this->toolkit.shortcuts(), 0);
  alert->hideView();
  this->press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(this->toolkit.shortcuts(), 1);
}

TYPED_TEST(AlertKeyboardTest, TheUpperOfTwoAlertsHasTheKeyboardWhicheverEndsFirst) {
  for (const bool upperEndsFirst : {true, false}) {
    const auto lower = this->makeAlert();
    lower->showInfo("Lower", "", "Lower's");
    const auto upper = this->makeAlert();
    upper->showInfo("Upper", "", "Upper's");
    this->toolkit.focusField();
    EXPECT_EQ(this->focused(), "Upper's");
    if (upperEndsFirst) {
      this->press(Qt::Key_Escape);
      EXPECT_FALSE(upper->isShowing());
      EXPECT_EQ(this->focused(), "Lower's");
    } else {
      lower->hideView();
      EXPECT_EQ(this->focused(), "Upper's");
    }
    this->press(Qt::Key_Escape);
    EXPECT_EQ(this->focused(), "hostField");
  }
}

}  // namespace
}  // namespace kifo::testing
