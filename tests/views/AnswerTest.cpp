// What a user does with a popup, by mouse, and what is reported of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <stdexcept>

#include "Kifo_iOS_Common_Kit/inapp/views/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoSurveyCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupCloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupPanel.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

class AnswerTest : public PopupTest {
 protected:
  AnswerTest() {
    request->actionItem = [this](auto button) {
      calls.push_back("action " + button->text.value_or("?"));
    };
    request->actionBodyItem = [this](auto button) {
      calls.push_back("body " + button->action->link.value_or("?"));
    };
    request->submitButtonItem = [this](auto button) {
      calls.push_back("submit " + button->text.value_or("?"));
    };
  }

  static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

  void choose(int row) {
    const auto cells = popup->findChildren<KifoSurveyCell*>();
    click(cells.at(row)->selectButton());
  }

  void pick(int row) {
    click(elements().emojiCollectionView->cells().at(static_cast<std::size_t>(row)));
  }

  std::vector<RecordingReporter::Report>& reports() { return reporter->reports; }

  std::vector<std::string> calls;
};

TEST_F(AnswerTest, APopupButtonRunsItsCallbackAndClosesWithoutAReportOfItsOwn) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes"), option("b2", "No")};
  present();
  click(popup->findChildren<KifoPopupCell*>().at(1)->titleLbl());
  click(popup->findChildren<KifoPopupCell*>().at(0)->titleLbl());  // too late
  settle();
  EXPECT_THAT(calls, ElementsAre("action No"));
  EXPECT_TRUE(reports().empty());
  EXPECT_EQ(closings, 1);
  EXPECT_TRUE(popup.isNull());
}

TEST_F(AnswerTest, ClosingReportsTheItemWithoutAnyAnswer) {
  campaign("SURVEY");
  choices(2);
  submitButton();
  present();
  choose(0);
  click(elements().closeButton);
  settle();
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].item, item);
  EXPECT_EQ(reports()[0].controller, screen);
  EXPECT_EQ(reports()[0].pageName, "home");
  const InAppAnswer& answer = reports()[0].answer;
  EXPECT_TRUE(!answer.body && !answer.choice && !answer.button && !answer.scoreField &&
              !answer.openEndedField && !answer.choiseField);
  EXPECT_EQ(closings, 1);
}

TEST_F(AnswerTest, AScreenThatIsGoneIsReportedAsNoneAndAMissingItemNotAtAll) {
  campaign("POPUP");
  present();
  screen.reset();
  click(elements().closeButton);
  settle();
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].controller, nullptr);
  request->preferences.appCommunicationItem = nullptr;
  present();
  click(elements().closeButton);
  settle();
  EXPECT_EQ(reports().size(), 1u);
  EXPECT_EQ(closings, 2);
}

TEST_F(AnswerTest, SubmittingASurveyWithNothingChosenOnlyRunsTheCallback) {
  campaign("SURVEY");
  choices(3);
  submitButton();
  present();
  EXPECT_TRUE(elements().submitButton->isDimmed());
  click(elements().submitButton);
  settle();
  EXPECT_THAT(calls, ElementsAre("submit Send"));
  EXPECT_TRUE(reports().empty());
  EXPECT_FALSE(popup.isNull());
  EXPECT_TRUE(popup->isVisible());
}

TEST_F(AnswerTest, ASurveySendsTheChoiceMadeLast) {
  campaign("SURVEY");
  choices(3);
  submitButton();
  request->submitButtonItem = [this](auto) { EXPECT_TRUE(reports().empty()) << "it comes first"; };
  present();
  choose(0);
  choose(2);
  const auto cells = popup->findChildren<KifoSurveyCell*>();
  EXPECT_STREQ(cells[0]->radialButton(), "circle");
  EXPECT_STREQ(cells[2]->radialButton(), "largecircle.fill.circle");
  EXPECT_FALSE(elements().submitButton->isDimmed());
  click(elements().submitButton);
  click(elements().submitButton);  // a second press while it fades changes nothing
  settle();
  ASSERT_EQ(reports().size(), 1u);
  const InAppAnswer& answer = reports()[0].answer;
  EXPECT_EQ(answer.choice, request->preferences.choices[2]);
  ASSERT_TRUE(answer.choiseField);
  EXPECT_EQ(answer.choiseField->choiseId, "c3");
  EXPECT_EQ(answer.choiseField->text, "Choice 3");
  EXPECT_EQ(answer.choiseField->freeText, "");
  EXPECT_EQ(closings, 1);
}

TEST_F(AnswerTest, OfTwoChoicesWithOneIdTheFirstIsMarkedAndTheTappedOneSent) {
  campaign("SURVEY");
  choices(3);
  request->preferences.choices[2]->id = "c1";
  submitButton();
  present();
  choose(2);
  EXPECT_STREQ(popup->findChildren<KifoSurveyCell*>()[0]->radialButton(),
               "largecircle.fill.circle");
  EXPECT_STREQ(popup->findChildren<KifoSurveyCell*>()[2]->radialButton(), "circle");
  click(elements().submitButton);
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].answer.choiseField->text, "Choice 3");
}

TEST_F(AnswerTest, AnEmojiIsPickedAnywhereInItsCellAndTheOthersArePale) {
  campaign("EMOJI");
  choices(3);
  submitButton();
  present();
  const auto& cells = elements().emojiCollectionView->cells();
  for (const auto* cell : cells) EXPECT_EQ(cell->alpha(), 0.4);
  QTest::mouseClick(cells[1], Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_EQ(cells[1]->alpha(), 1.0);
  EXPECT_EQ(cells[0]->alpha(), 0.4);
  EXPECT_EQ(popup->fields().currentSelected, 1);
  click(elements().submitButton);
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].answer.choiseField->choiseId, "c2");
}

TEST_F(AnswerTest, AScoreSendsTheWholePartOfTheThumbsPlaceAndWhatWasTyped) {
  campaign("SCORE");
  item->minScore = 1;
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{std::nullopt, "Why?"};
  submitButton();
  present();
  EXPECT_EQ(elements().scoreValueLabel->text(), "1");
  CustomSlider* slider = elements().slider;
  drag(slider, QPoint(12, 20), QPoint(slider->width() * 3 / 4, 20));
  const float position = popup->popUpWindowView()->sliderValue();
  EXPECT_GT(position, 7.f);
  EXPECT_LT(position, 9.f);
  EXPECT_NE(position, static_cast<float>(static_cast<int>(position)))
      << "the thumb follows the finger";
  EXPECT_EQ(elements().scoreValueLabel->text(), QString::number(static_cast<int>(position)));
  QTest::keyClicks(elements().textField, "good");
  click(elements().submitButton);
  ASSERT_EQ(reports().size(), 1u);
  ASSERT_TRUE(reports()[0].answer.scoreField);
  EXPECT_EQ(reports()[0].answer.scoreField->value, static_cast<int>(position));
  EXPECT_EQ(reports()[0].answer.scoreField->freeText, "good");
}

TEST_F(AnswerTest, ASelectionInAnItemOfAnotherTypeSendsBothAnswersInOrder) {
  campaign("EMOJI");  // the window goes by the preferences' type
  item->type = "SCORE";
  choices(2);
  submitButton();
  present();
  pick(0);
  click(elements().submitButton);
  settle();
  ASSERT_EQ(reports().size(), 2u);
  EXPECT_TRUE(reports()[0].answer.choiseField);
  EXPECT_TRUE(reports()[1].answer.scoreField);
  EXPECT_FALSE(reports()[1].answer.choice);
  EXPECT_EQ(closings, 1);
}

TEST_F(AnswerTest, ATouchOfTheBodyFollowsTheItemsAction) {
  campaign("POPUP");
  item->action = std::make_shared<AppCommunicationItemAction>();
  item->action->link = "app://offers";
  present();
  QTest::mouseClick(popup.data(), Qt::LeftButton, {},
                    elements().popupView->geometry().topLeft() + QPoint(40, 30));
  settle();
  EXPECT_THAT(calls, ElementsAre("body app://offers"));
  EXPECT_TRUE(reports().empty());
  EXPECT_EQ(closings, 1);
}

TEST_F(AnswerTest, WithoutAnActionATouchOfTheBodyDoesNothing) {
  campaign("POPUP");
  present();
  click(elements().popupTitle);
  QTest::mouseClick(popup.data(), Qt::LeftButton, {}, QPoint(2, 2));
  settle();
  EXPECT_TRUE(calls.empty());
  EXPECT_EQ(closings, 0);
}

TEST_F(AnswerTest, FreeTextTiedToChoicesComesAndGoesWithThemAndForgetsItsText) {
  campaign("SURVEY");
  item->defaultFreeTextCheckBox = false;
  item->defaultFreeText = DefaultFreeText{std::nullopt, "Which one?"};
  choices(3);
  request->preferences.choices[2]->freeTextQuestionCheckBox = true;
  submitButton();
  present();
  const double closed = elements().popupView->height();
  EXPECT_FALSE(elements().textField->isVisible());
  choose(2);
  EXPECT_TRUE(elements().textField->isVisible());
  EXPECT_EQ(elements().popupView->height(), closed + 100);
  QTest::keyClicks(elements().textField, "another");
  choose(0);
  EXPECT_FALSE(elements().textField->isVisible());
  EXPECT_EQ(elements().popupView->height(), closed);
  EXPECT_EQ(popup->popUpWindowView()->freeText(), "");
  choose(2);
  EXPECT_EQ(elements().textField->text(), "");
}

TEST_F(AnswerTest, CopyingTheCouponPutsItsCodeOnThePasteboardOnce) {
  campaign("POPUP");
  item->coupon = Coupon{{"SUMMER10", "000000", "FFFFFF", {}},
                        {{"Copy", "FFFFFF", "000000", {}}, {"Copied", "112233", "00FF00", {}}},
                        {"000000", "2"}};
  present();
  click(elements().copyButton);
  EXPECT_EQ(fake.pasteboard->string.get(), "SUMMER10");
  EXPECT_FALSE(elements().copyButton->isEnabled());
  EXPECT_EQ(elements().copyButton->text(), "Copied");
  EXPECT_EQ(elements().copyButton->surface()->alpha(), 128);
  EXPECT_EQ(elements().copyButton->surface()->green(), 255);
}

TEST_F(AnswerTest, ACallbackThatThrowsIsPrintedAndThePopupStillCloses) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes")};
  request->actionItem = [](auto) { throw std::runtime_error("host"); };
  present();
  click(popup->findChildren<KifoPopupCell*>().at(0)->titleLbl());
  settle();
  EXPECT_THAT(fake.console->lines(), Contains("Kifo PopUpWindow: a host callback threw: host"));
  EXPECT_EQ(closings, 1);
}

}  // namespace
}  // namespace kifo::testing
