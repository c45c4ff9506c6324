// What a user does with a popup, by mouse, and what is reported of it.
#include <stdexcept>

#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AnswerTest : public PopupTest {
 protected:
  AnswerTest() {
    request->actionItem = [this](auto button) { calls.push_back("action " + *button->text); };
    request->actionBodyItem = [this](auto button) {
      calls.push_back("body " + *button->action->link);
    };
    request->submitButtonItem = [this](auto button) {
      EXPECT_TRUE(reports().empty()) << "the callback comes first";
      calls.push_back("submit " + *button->text);
    };
  }

  void choose(int row) { click(choice(row)->selectButton()); }
  void submit() {
    click(elements().submitButton);
    settle();
  }

  std::vector<RecordingReporter::Report>& reports() { return reporter->reports; }

  std::vector<std::string> calls;
};

TEST_F(AnswerTest, ClosingReportsTheItemWithoutAnyAnswer) {
  campaign("SURVEY");
  choices(2);
  submitButton();
  present();
  choose(0);
  close();
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
  close();
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].controller, nullptr);
  request->preferences.appCommunicationItem = nullptr;
  present();
  close();
  EXPECT_EQ(reports().size(), 1u);
  EXPECT_EQ(closings, 2);
}

TEST_F(AnswerTest, OfTwoChoicesWithOneIdTheFirstIsMarkedAndTheTappedOneSent) {
  campaign("SURVEY");
  choices(3);
  request->preferences.choices[2]->id = "c1";
  submitButton();
  present();
  choose(2);
  EXPECT_STREQ(choice(0)->radialButton(), "largecircle.fill.circle");
  EXPECT_STREQ(choice(2)->radialButton(), "circle");
  submit();
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].answer.choiseField->text, "Choice 3");
}

TEST_F(AnswerTest, AnEmojiIsPickedAnywhereInItsCellAndTheOthersArePale) {
  campaign("EMOJI");
  item->type = "SCORE";  // the window goes by the preferences' type, the answer by the item's own
  choices(3);
  submitButton();
  present();
  const auto& cells = elements().emojiCollectionView->cells();
  for (const auto* cell : cells) EXPECT_EQ(cell->alpha(), 0.4);
  QTest::mouseClick(cells[1], Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_EQ(cells[1]->alpha(), 1.0);
  EXPECT_EQ(cells[0]->alpha(), 0.4);
  submit();
  ASSERT_EQ(reports().size(), 2u) << "a choice in an item of another type sends both answers";
  EXPECT_EQ(reports()[0].answer.choiseField->choiseId, "c2");
  EXPECT_TRUE(reports()[1].answer.scoreField);
  EXPECT_FALSE(reports()[1].answer.choice);
  EXPECT_EQ(closings, 1);
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
  EXPECT_EQ(elements().copyButton->surface()->name(QColor::HexArgb), "#8000ff00");
}

TEST_F(AnswerTest, ACallbackThatThrowsIsPrintedAndThePopupStillCloses) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes")};
  request->actionItem = [](auto) { throw std::runtime_error("host"); };
  present();
  click(button(0));
  settle();
  EXPECT_THAT(fake.console->lines(), Contains("Kifo PopUpWindow: a host callback threw: host"));
  EXPECT_EQ(closings, 1);
}

}  // namespace
}  // namespace kifo::testing
