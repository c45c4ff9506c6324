#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"
#include "tests/alert/AlertFixture.h"

namespace kifo {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class KifoPopupKeyboardTest : public AlertFixture {};

TEST_F(KifoPopupKeyboardTest, EscapeClosesWhereTheUserIsOfferedAWayOut) {
  KifoAppearance tappable;
  tappable.hideWhenBackgroundViewIsTapped = true;
  KifoAppearance untappable = tappable;
  untappable.disableTapGesture = true;
  KifoAppearance closed;
  closed.showCloseButton = false;
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
    const auto alert = makeAlert(each.appearance);
    if (each.hasButton) alert->addButton("Yes", [] { FAIL() << "Escape is no press"; });
    alert->showTitle("Escape", "", each.style, each.closeButtonTitle);
    press(Qt::Key_Escape);
    EXPECT_EQ(alert->isShowing(), !each.closes) << what;
    alert->hideView();
  }
}

TEST_F(KifoPopupKeyboardTest, EnterPressesTheFirstButtonUnlessAnotherHasTheFocus) {
  for (const bool moveOn : {false, true}) {
    for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
      const auto alert = makeAlert();
      std::vector<QString> pressed;
      for (const QString name : {"First", "Second"}) {
        alert->addButton(name, [&pressed, name] { pressed.push_back(name); });
      }
      alert->showTitle("Enter", "", KifoPopupStyle::question);
      if (moveOn) press(Qt::Key_Tab);
      press(enter);
      EXPECT_THAT(pressed, ElementsAre(moveOn ? "Second" : "First"));
      EXPECT_FALSE(alert->isShowing());
    }
  }
}

TEST_F(KifoPopupKeyboardTest, EnterInAFieldPressesTheFirstButtonAndInATextViewBreaksTheLine) {
  const auto alert = makeAlert();
  QPlainTextEdit* story = alert->addTextView();
  QLineEdit* name = alert->addTextField("Name");
  int saved = 0;
  alert->addButton("Save", [&] { ++saved; });
  alert->showEdit("Who?");

  story->setFocus();
  QTest::keyClicks(story, "a");
  press(Qt::Key_Return);
  QTest::keyClicks(story, "b");
  EXPECT_EQ(story->toPlainText(), "a\nb");
  EXPECT_EQ(saved, 0);
  name->setFocus();
  QTest::keyClicks(name, "Ada");
  press(Qt::Key_Return);
  EXPECT_EQ(saved, 1);
  EXPECT_EQ(name->text(), "Ada");
}

TEST_F(KifoPopupKeyboardTest, AKeyHeldDownSinceBeforeDoesNotAnswer) {
  const auto alert = makeAlert();
  alert->addButton("Yes", [] { FAIL(); });
  alert->showTitle("Held", "", KifoPopupStyle::question, "No");
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
    QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
    QApplication::sendEvent(QApplication::focusWidget(), &repeated);
  }
  EXPECT_TRUE(alert->isShowing());
}

TEST_F(KifoPopupKeyboardTest, TabGoesRoundInTheOrderThatIsSeen) {
  const auto alert = makeAlert();
  KifoButton* yes = alert->addButton("Yes", [] {});
  auto* custom = new QPushButton("Custom");
  alert->customSubview = custom;
  QPlainTextEdit* story = alert->addTextView();
  QLineEdit* name = alert->addTextField("Name");
  alert->closeIcon = QIcon(QPixmap(16, 16));
  alert->showEdit("Order", "", "No");
  KifoButton* no = alert->buttons().back();

  std::vector<QWidget*> forth = {QApplication::focusWidget()};
  for (int i = 0; i < 5; ++i) {
    press(Qt::Key_Tab);
    forth.push_back(QApplication::focusWidget());
  }
  QWidget* cross = forth.back();
  EXPECT_THAT(forth, ElementsAre(story, name, custom, yes, no, cross));
  press(Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), story);
  press(Qt::Key_Backtab);
  EXPECT_EQ(QApplication::focusWidget(), cross);
}

TEST_F(KifoPopupKeyboardTest, AnAlertWithoutAnythingToFocusKeepsTheKeysFromTheWindow) {
  const auto alert = makeAlert();
  alert->showWait("One moment");
  QTest::keyClicks(QApplication::focusWidget(), "abc");
  EXPECT_THAT(field->text().toStdString(), IsEmpty());
  alert->hideView();
  QTest::keyClicks(QApplication::focusWidget(), "abc");
  EXPECT_EQ(field->text(), "abc");
}

TEST_F(KifoPopupKeyboardTest, TheWindowsShortcutsRestAndAnAmpersandInATitleIsNone) {
  int fired = 0;
  const QShortcut shortcut(QKeySequence(Qt::CTRL | Qt::Key_D), window.get(), [&] { ++fired; });
  const auto alert = makeAlert();
  KifoButton* button = alert->addButton("R&D", [] { FAIL(); });
  alert->showInfo("Departments", "", "OK");
  EXPECT_TRUE(button->shortcut().isEmpty());
  press(Qt::Key_D, Qt::AltModifier);
  EXPECT_TRUE(alert->isShowing());
  press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(fired, 0);
  alert->hideView();
  press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(fired, 1);
}

TEST_F(KifoPopupKeyboardTest, TheUpperOfTwoAlertsHasTheKeyboardWhicheverEndsFirst) {
  for (const bool upperEndsFirst : {true, false}) {
    const auto lower = makeAlert();
    lower->showInfo("Lower", "", "OK");
    const auto upper = makeAlert();
    upper->showInfo("Upper", "", "OK");
    lower->buttons().front()->setFocus();
    EXPECT_EQ(QApplication::focusWidget(), upper->buttons().front());
    if (upperEndsFirst) {
      press(Qt::Key_Escape);
      EXPECT_FALSE(upper->isShowing());
      EXPECT_EQ(QApplication::focusWidget(), lower->buttons().front());
    } else {
      lower->hideView();
      EXPECT_EQ(QApplication::focusWidget(), upper->buttons().front());
    }
    press(Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), field);
  }
}

}  // namespace
}  // namespace kifo
