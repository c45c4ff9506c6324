// Popups by keyboard alone.
#include "tests/views/Pixels.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

class FocusTest : public PopupTest {
 protected:
  FocusTest() {
    request->actionItem = [this](auto button) { calls.push_back("action " + *button->text); };
    request->actionBodyItem = [this](auto button) {
      calls.push_back("body " + *button->action->link);
    };
  }

  std::vector<std::string> calls;
};

TEST_P(FocusTest, WhatTheUserTypesWhenAPopupAppearsPressesNothingAndReachesNoField) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes")};
  present();
  for (const auto code : {Qt::Key_Space, Qt::Key_Return, Qt::Key_A}) key(code);
  toolkit->focusHost();
  for (const auto code : {Qt::Key_Space, Qt::Key_Return, Qt::Key_A}) key(code);
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_EQ(toolkit->hostText(), "");
  dismiss();
  key(Qt::Key_A);
  EXPECT_EQ(toolkit->hostText(), "a");
}

TEST_P(FocusTest, TabGoesRoundInsideThePopup) {
  campaign("SCORE");
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{};
  submitButton();
  present();
  EXPECT_THAT(tabRound(5),
              ElementsAre("slider", "textField", "submitButton", "closeButton", "slider"));
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(focused(), "closeButton");
}

TEST_P(FocusTest, ASurveyIsOneStopAndItsArrowsMoveWithinIt) {
  campaign("SURVEY");
  choices(20);
  submitButton();
  present();
  EXPECT_THAT(tabRound(4),
              ElementsAre("selectButton", "submitButton", "closeButton", "selectButton"));
  for (const auto code : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Space}) key(code);
  EXPECT_EQ(toolkit->state()->selectActionItem, request->preferences.choices[2]);
  key(Qt::Key_Home);
  EXPECT_TRUE(user.named("Choice 1")->state().focused);
  key(Qt::Key_End);
  EXPECT_TRUE(user.named("Choice 20")->state().focused);
  const QRect list = piece("buttonsTableview")->rect();
  EXPECT_TRUE(list.contains(user.named("Choice 20")->rect().center())) << "it follows the focus";
  key(Qt::Key_Return);
  EXPECT_EQ(toolkit->state()->selectActionItem, request->preferences.choices[19]);
  key(Qt::Key_Tab);
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(user.named("Choice 20")->state().focused) << "Tab comes back to where one was";
}

TEST_P(FocusTest, AnAnswerCanBeGivenWithoutAMouse) {
  campaign("OPEN_ENDED");
  submitButton();
  present();
  key(Qt::Key_Tab);
  user.type("More colours");
  EXPECT_EQ(text("textFieldCountLabel"), "12/150");
  key(Qt::Key_Return);
  EXPECT_EQ(focused(), "submitButton");
  key(Qt::Key_Return);
  settle();
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].answer.openEndedField->freeText, "More colours");
}

TEST_P(FocusTest, PagesCanBeTurnedAndAnItemsActionFollowedWithoutAMouse) {
  campaign("POPUP");
  pictures(2);
  bodyAction("app://offers");
  present();
  key(Qt::Key_Tab);
  EXPECT_THAT(tabRound(1), ElementsAre("popupImageViewList"));
  EXPECT_EQ(text("pageIndicator"), "Image 1 of 2");
  key(Qt::Key_Right);
  EXPECT_EQ(toolkit->state()->currentIndex, 1);
  EXPECT_EQ(text("pageIndicator"), "Image 2 of 2");
  key(Qt::Key_Left);
  EXPECT_EQ(toolkit->state()->currentIndex, 0);
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  key(Qt::Key_Space);
  settle();
  EXPECT_THAT(calls, ElementsAre("body app://offers"));
}

TEST_P(FocusTest, EscapeClosesFromEverywhereAsTheCloseButtonDoesAndTheFocusReturns) {
  for (int steps = 0; steps < 4; ++steps) {
    campaign("SCORE");
    item->maxScore = 3;
    item->defaultFreeText = DefaultFreeText{};
    present();
    tabRound(steps);
    key(Qt::Key_Escape);
    settle();
    EXPECT_EQ(toolkit->closings, steps + 1);
    ASSERT_EQ(reports().size(), static_cast<std::size_t>(steps + 1));
    EXPECT_FALSE(reports().back().answer.scoreField);
    EXPECT_EQ(focused(), "hostField");
  }
  present();
  toolkit->removeHostField();  // which had the focus before
  key(Qt::Key_Escape);
  settle();
  EXPECT_EQ(toolkit->closings, 5);
  EXPECT_EQ(toolkit->shortcuts(), 0) << "the host's shortcuts on a popup's keys wait";
}

TEST_P(FocusTest, ATallPanelScrollsByKeyboardBelowACloseButtonThatStays) {
  toolkit->resize({320, 480});
  campaign("POPUP");
  request->preferences.detailText = std::string(3000, 'x');
  present();
  const QRect close = box("closeButton");
  const int top = box("popupTitle").y();
  key(Qt::Key_PageDown);
  EXPECT_LT(box("popupTitle").y(), top - 100);
  key(Qt::Key_Up);
  EXPECT_GT(box("popupTitle").y(), top - 400);
  EXPECT_EQ(box("closeButton"), close);
  EXPECT_EQ(part("closeButton").seen, close);
}

TEST_P(FocusTest, TheFocusRingStandsOutFromBothSidesOfIt) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes", "#0A5CD8", "#FFFFFF")};
  present();
  const QRect button = box("titleLbl");
  const QImage off = cut(toolkit->picture(), button);
  key(Qt::Key_Tab);
  settle();
  expectRingStandsOut(off, cut(toolkit->picture(), button));
}

KIFO_ON_EACH_TOOLKIT(FocusTest);

}  // namespace
}  // namespace kifo::testing
