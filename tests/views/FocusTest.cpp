// Popups by keyboard alone.
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>

#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

using ::testing::ElementsAre;

class FocusTest : public PopupTest {
 protected:
  FocusTest() : hostField(new QLineEdit(host.get())) {
    host->setCentralWidget(hostField);
    hostField->show();
    hostField->setFocus();
  }

  static QString focused() { return QApplication::focusWidget()->objectName(); }

  static std::vector<std::string> tabRound(int steps) {
    std::vector<std::string> names;
    for (int i = 0; i < steps; ++i) {
      key(Qt::Key_Tab);
      names.push_back(focused().toStdString());
    }
    return names;
  }

  QLineEdit* hostField;
};

TEST_F(FocusTest, WhatTheUserTypesWhenAPopupAppearsPressesNothing) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes")};
  bool pressed = false;
  request->actionItem = [&](auto) { pressed = true; };
  present();
  EXPECT_EQ(QApplication::focusWidget(), popup.data());
  for (const auto code : {Qt::Key_Space, Qt::Key_Return, Qt::Key_A}) key(code);
  EXPECT_FALSE(pressed);
  EXPECT_EQ(hostField->text(), "");
}

TEST_F(FocusTest, TabGoesRoundInsideThePopup) {
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

TEST_F(FocusTest, ASurveyIsOneStopAndItsArrowsMoveWithinIt) {
  campaign("SURVEY");
  choices(20);
  submitButton();
  present();
  EXPECT_THAT(tabRound(4),
              ElementsAre("selectButton", "submitButton", "closeButton", "selectButton"));
  for (const auto code : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Space}) key(code);
  EXPECT_EQ(popup->state().selectActionItem, request->preferences.choices[2]);
  key(Qt::Key_End);
  QWidget* last = choice(19)->selectButton();
  EXPECT_EQ(QApplication::focusWidget(), last);
  EXPECT_FALSE(last->visibleRegion().isEmpty()) << "the list follows the focus";
  key(Qt::Key_Return);
  EXPECT_EQ(popup->state().selectActionItem, request->preferences.choices[19]);
  key(Qt::Key_Tab);
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget(), last) << "Tab comes back to where one was";
}

TEST_F(FocusTest, TheSliderMovesByWholeScores) {
  campaign("SCORE");
  item->minScore = 0;
  item->maxScore = 10;
  present();
  key(Qt::Key_Tab);
  const std::pair<Qt::Key, float> steps[] = {
      {Qt::Key_Right, 1.f}, {Qt::Key_Right, 2.f}, {Qt::Key_End, 10.f}, {Qt::Key_Left, 9.f}};
  for (const auto& [code, score] : steps) {
    key(code);
    EXPECT_EQ(popup->popUpWindowView()->sliderValue(), score);
  }
}

TEST_F(FocusTest, AnAnswerCanBeGivenWithoutAMouse) {
  campaign("OPEN_ENDED");
  submitButton();
  present();
  key(Qt::Key_Tab);
  QTest::keyClicks(QApplication::focusWidget(), "More colours");
  EXPECT_EQ(elements().textFieldCountLabel->text(), "12/150");
  key(Qt::Key_Return);
  EXPECT_EQ(focused(), "submitButton");
  key(Qt::Key_Return);
  ASSERT_EQ(reporter->reports.size(), 1u);
  EXPECT_EQ(reporter->reports[0].answer.openEndedField->freeText, "More colours");
  EXPECT_FALSE(reporter->reports[0].answer.choiseField);
}

TEST_F(FocusTest, PagesCanBeTurnedAndAnItemsActionFollowedWithoutAMouse) {
  campaign("POPUP");
  request->preferences.images = {"https://p.example/1", "https://p.example/2"};
  item->action = std::make_shared<AppCommunicationItemAction>();
  int followed = 0;
  request->actionBodyItem = [&](auto) { ++followed; };
  present();
  EXPECT_THAT(tabRound(2), ElementsAre("popupView", "popupImageViewList"));
  key(Qt::Key_Right);
  EXPECT_EQ(elements().popupImageViewList->currentPage(), 1);
  EXPECT_EQ(popup->state().currentIndex, 1);
  key(Qt::Key_Left);
  EXPECT_EQ(popup->state().currentIndex, 0);
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  key(Qt::Key_Space);
  EXPECT_EQ(followed, 1);
}

TEST_F(FocusTest, EscapeClosesFromEverywhereAsTheCloseButtonDoesAndTheFocusReturns) {
  int triggered = 0;
  const QShortcut escape(QKeySequence(Qt::Key_Escape), host.get(), [&] { ++triggered; });
  for (int steps = 0; steps < 4; ++steps) {
    campaign("SCORE");
    item->maxScore = 3;
    item->defaultFreeText = DefaultFreeText{};
    present();
    tabRound(steps);
    key(Qt::Key_Escape);
    settle();
    EXPECT_EQ(closings, steps + 1);
    EXPECT_EQ(reporter->reports.size(), static_cast<std::size_t>(steps + 1));
    EXPECT_EQ(QApplication::focusWidget(), hostField);
  }
  present();
  delete host->takeCentralWidget();  // which had the focus before
  key(Qt::Key_Escape);
  settle();
  EXPECT_EQ(closings, 5);
  EXPECT_EQ(triggered, 0) << "the host's shortcuts on a popup's keys wait";
}

TEST_F(FocusTest, OnlyWhatLiesAboveThePopupMayTakeTheFocus) {
  campaign("OPEN_ENDED");
  present();
  tabRound(1);
  hostField->setFocus();
  EXPECT_EQ(focused(), "textField");
  auto* onTop = new QPushButton(host.get());
  onTop->show();
  onTop->setFocus();
  EXPECT_EQ(QApplication::focusWidget(), onTop);
}

TEST_F(FocusTest, ATallPanelScrollsByKeyboardBelowACloseButtonThatStays) {
  host->resize(320, 480);
  campaign("POPUP");
  request->preferences.detailText = std::string(3000, 'x');
  present();
  QScrollBar* bar = elements().panelScroll->verticalScrollBar();
  const QRect close = elements().closeButton->geometry();
  key(Qt::Key_PageDown);
  EXPECT_GT(bar->value(), 100);
  key(Qt::Key_Up);
  EXPECT_LT(bar->value(), 400);
  EXPECT_EQ(elements().closeButton->geometry(), close);
  EXPECT_TRUE(popup->rect().contains(close));
}

}  // namespace
}  // namespace kifo::testing
