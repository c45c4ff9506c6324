// What a user does with a popup by mouse, and what is reported of it.
#include <QEventLoop>
#include <QTimer>

#include "tests/views/Pixels.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

class AnswerTest : public PopupTest {
 protected:
  AnswerTest() {
    request->actionBodyItem = [this](auto button) {
      calls.push_back("body " + *button->action->link);
    };
    request->submitButtonItem = [this](auto button) {
      EXPECT_TRUE(reports().empty()) << "the callback comes first";
      calls.push_back("submit " + *button->text);
    };
  }

  std::vector<std::string> calls;
};

TEST_P(AnswerTest, ASecondPressWhileTheHostsCallbackRunsAnswersNothing) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes")};
  int answers = 0;
  request->actionItem = [&](auto) {
    if (++answers > 1) return;
    const QPoint yes = box("titleLbl").center();
    QEventLoop nested;
    QTimer::singleShot(0, &nested, [&] {
      clickAt(yes);
      clickAt(yes);
      nested.quit();
    });
    nested.exec();
  };
  present();
  click("Yes");
  EXPECT_EQ(answers, 1);
  EXPECT_TRUE(isGone());
}

TEST_P(AnswerTest, ASurveyWaitsForAChoiceAndSendsTheLastOneOnce) {
  campaign("SURVEY");
  choices(3);
  submitButton();
  present();
  EXPECT_EQ(piece("submitButton")->text(QAccessible::Description), "Choose an answer first");
  click("Send");
  EXPECT_THAT(calls, ElementsAre("submit Send"));
  EXPECT_THAT(reports(), IsEmpty());
  ASSERT_FALSE(isGone());
  click("Choice 1");
  click("Choice 3");
  EXPECT_FALSE(user.named("Choice 1")->state().checked);
  EXPECT_TRUE(user.named("Choice 3")->state().checked);
  EXPECT_EQ(piece("submitButton")->text(QAccessible::Description), "");
  click("Send");
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].answer.choiseField->choiseId, "c3");
  EXPECT_EQ(reports()[0].controller, screen);
  EXPECT_EQ(reports()[0].pageName, "home");
  EXPECT_EQ(toolkit->closings, 1);
}

TEST_P(AnswerTest, ClosingReportsTheItemWithoutAnyAnswerAndAScreenThatIsGoneAsNone) {
  campaign("SURVEY");
  choices(2);
  submitButton();
  present();
  click("Choice 1");
  close();
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].item, item);
  EXPECT_EQ(reports()[0].controller, screen);
  EXPECT_EQ(reports()[0].pageName, "home");
  const InAppAnswer& answer = reports()[0].answer;
  EXPECT_TRUE(!answer.body && !answer.choice && !answer.button && !answer.scoreField &&
              !answer.openEndedField && !answer.choiseField);
  EXPECT_EQ(toolkit->closings, 1);

  reports().clear();
  screen.reset();
  present();
  close();
  EXPECT_EQ(reports().at(0).controller, nullptr);
  request->preferences.appCommunicationItem = nullptr;
  present();
  close();
  EXPECT_EQ(reports().size(), 1u) << "without an item there is nothing to report";
}

TEST_P(AnswerTest, AnEmojiIsPickedAnywhereInItsCellIsNamedForAMomentAndTheOthersArePale) {
  fake.http->setHandler([](const HttpRequest&) {
    return HttpAnswer{{}, 200, pictureBytes({60, 60}, Qt::black)};
  });
  campaign("EMOJI");
  item->type = "SCORE";  // the window goes by the preferences' type, the answer by the item's own
  request->preferences.choices = {option("c1", "Bad"), option("c2", "Good"), option("c3", " ")};
  for (auto& choice : request->preferences.choices) choice->imageUrl = "https://p.example/face";
  submitButton();
  present();
  finishDecoding();
  const auto darkness = [this](int cell) {
    return 255 - colorAt(box("emojiButton", cell).center()).lightness();
  };
  for (const int cell : {0, 1, 2}) EXPECT_NEAR(darkness(cell), 102, 8) << "0.4 of black";
  clickAt(box("emojiButton", 1).center() - QPoint(21, 21));
  EXPECT_TRUE(user.named("Good")->state().checked);
  EXPECT_EQ(text("emojiText"), "Good");
  EXPECT_EQ(darkness(1), 255);
  EXPECT_NEAR(darkness(0), 102, 8);
  EXPECT_TRUE(QTest::qWaitFor([this] { return user.object("emojiText") == nullptr; }, 20000));
  clickAt(box("emojiButton", 2).center());
  EXPECT_EQ(user.object("emojiText"), nullptr) << "there is nothing to say";
  clickAt(box("emojiButton", 1).center());
  click("Send");
  ASSERT_EQ(reports().size(), 2u) << "a choice in an item of another type sends both answers";
  EXPECT_EQ(reports()[0].answer.choiseField->choiseId, "c2");
  EXPECT_TRUE(reports()[1].answer.scoreField);
  EXPECT_FALSE(reports()[1].answer.choice);
  EXPECT_EQ(toolkit->closings, 1);
}

TEST_P(AnswerTest, AScoreIsSentWithWhatWasTyped) {
  campaign("SCORE");
  request->preferences.questionText = "Would you recommend us?";
  item->minScore = 1;
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{std::nullopt, "Why?"};
  submitButton();
  present();
  EXPECT_EQ(text("scoreValueLabel"), "1");
  auto* slider = piece("slider");
  EXPECT_EQ(slider->role(), QAccessible::Slider);
  EXPECT_EQ(slider->text(QAccessible::Name), "Would you recommend us?");
  ASSERT_TRUE(slider->valueInterface());
  EXPECT_EQ(slider->valueInterface()->minimumValue().toInt(), 1);
  EXPECT_EQ(slider->valueInterface()->maximumValue().toInt(), 10);
  slider->valueInterface()->setCurrentValue(7);
  EXPECT_EQ(toolkit->state()->sliderValue, 7.f);
  key(Qt::Key_Tab);
  for (const auto& [code, score] : {std::pair(Qt::Key_Right, 8.f), std::pair(Qt::Key_End, 10.f),
                                    std::pair(Qt::Key_Left, 9.f)}) {
    key(code);
    EXPECT_EQ(toolkit->state()->sliderValue, score);
  }
  EXPECT_EQ(text("scoreValueLabel"), "9");
  click("Why?");
  user.type("good");
  EXPECT_EQ(text("textFieldCountLabel"), "4/150");
  click("Send");
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].answer.scoreField->value, 9);
  EXPECT_EQ(reports()[0].answer.scoreField->freeText, "good");
}

/// The rows in which something is drawn on white.
int inkHeight(const QImage& picture) {
  int rows = 0;
  for (int y = 0; y < picture.height(); ++y) {
    int darkest = 255;
    for (int x = 0; x < picture.width(); ++x) {
      darkest = std::min(darkest, picture.pixelColor(x, y).lightness());
    }
    rows += darkest < 128;
  }
  return rows;
}

TEST_P(AnswerTest, AThumbFollowsTheFingerItsValueGrowsAndItGoesToTheWholeScoreWhenItIsLetGo) {
  campaign("SCORE");
  item->maxScore = 4;
  present();
  const auto valueHeight = [this] {
    return inkHeight(cut(toolkit->picture(), box("scoreValueLabel")));
  };
  const int before = valueHeight();
  const QRect slider = box("slider");
  const QPoint at(slider.left() + slider.width() * 2 / 3, slider.center().y() + 6);
  drag(at, at, false);
  EXPECT_NEAR(toolkit->state()->sliderValue, 2.7, 0.2);
  EXPECT_GT(valueHeight(), before);
  QTest::mouseMove(&toolkit->window(), QPoint(slider.right(), at.y()));
  EXPECT_EQ(toolkit->state()->sliderValue, 4.f) << "not beyond its end";
  QTest::mouseMove(&toolkit->window(), at);
  QTest::mouseRelease(&toolkit->window(), Qt::LeftButton, {}, at);
  EXPECT_EQ(toolkit->state()->sliderValue, 2.f);
  EXPECT_EQ(valueHeight(), before);
}

TEST_P(AnswerTest, FreeTextTakes150BytesWarnsBeforeAndComesAndGoesWithItsChoice) {
  campaign("SURVEY");
  item->defaultFreeTextCheckBox = false;
  item->defaultFreeText = DefaultFreeText{std::nullopt, "Which one?"};
  choices(2);
  request->preferences.choices[1]->freeTextQuestionCheckBox = true;
  submitButton();
  present();
  const auto panelHeight = [this] {
    return box("submitButton").bottom() - box("popupTitle").top();
  };
  const auto reddest = [this] {
    const QImage counter = cut(toolkit->picture(), box("textFieldCountLabel"));
    int most = 0;
    for (int i = 0; i < counter.width() * counter.height(); ++i) {
      const QColor seen = counter.pixelColor(i % counter.width(), i / counter.width());
      most = std::max(most, seen.red() - seen.blue());
    }
    return most;
  };
  EXPECT_EQ(user.named("Which one?"), nullptr);
  const int closed = panelHeight();
  click("Choice 2");
  EXPECT_EQ(panelHeight(), closed + 100);
  EXPECT_EQ(focused(), "textField");
  user.type(" ");  // refused at the start
  user.type(QString(139, 'a'));
  EXPECT_LT(reddest(), 20);
  user.type("a");
  EXPECT_GT(reddest(), 60) << "little is left";
  user.type(QString(9, 'a') + "é");
  EXPECT_EQ(toolkit->state()->freeText, std::string(149, 'a'));
  click("Choice 1");
  EXPECT_EQ(user.named("Which one?"), nullptr);
  EXPECT_EQ(panelHeight(), closed);
  EXPECT_EQ(toolkit->state()->freeText, "");
  click("Choice 2");
  EXPECT_EQ(text("textFieldCountLabel"), "0/150");
}

TEST_P(AnswerTest, ATouchOfTheBodyFollowsTheItemsActionAndADragDoesNot) {
  campaign("SURVEY");
  choices(12);
  bodyAction("app://offers");
  present();
  const QPoint body = box("popupTitle").center();
  drag(body, body + QPoint(0, 60));
  EXPECT_THAT(calls, IsEmpty());
  clickAt(body);
  EXPECT_THAT(calls, ElementsAre("body app://offers"));
  EXPECT_THAT(reports(), IsEmpty());
  EXPECT_EQ(toolkit->closings, 1);
}

TEST_P(AnswerTest, AFingerDrawnOverAListScrollsItAndChoosesNothing) {
  campaign("SURVEY");
  choices(12);
  present();
  const QRect third = box("selectButton", 2);
  drag(third.center(), third.center() - QPoint(0, 80));
  EXPECT_LT(box("selectButton", 2).y(), third.y() - 20);
  EXPECT_EQ(toolkit->state()->selectActionItem, nullptr);
}

TEST_P(AnswerTest, CopyingTheCouponPutsItsCodeOnThePasteboard) {
  campaign("POPUP");
  item->coupon = Coupon{{"SUMMER10", "000000", "FFFFFF", {}},
                        {{"Copy", "FFFFFF", "000000", {}}, {"Copied", "112233", "00FF00", {}}},
                        {"000000", "2"}};
  present();
  click("Copy");
  EXPECT_EQ(fake.pasteboard->string.get(), "SUMMER10");
  EXPECT_EQ(text("copyButton"), "Copied");
  const QRect button = box("copyButton");
  const QColor surface = colorAt({button.left() + 20, button.center().y()});
  EXPECT_NEAR(surface.red(), 120, 12) << "half of green on white, or darker under the pointer";
  EXPECT_NEAR(surface.green(), 240, 20);
}

TEST_P(AnswerTest, AButtonRunsItsCallbackOnceAndClosesWithoutAReportEvenIfThatThrows) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes"), option("b2", "No")};
  request->actionItem = [this](auto button) {
    calls.push_back(*button->text);
    throw std::runtime_error("host");
  };
  present();
  click("No");
  EXPECT_THAT(calls, ElementsAre("No"));
  EXPECT_THAT(fake.console->lines(), Contains("Kifo PopUpWindow: a host callback threw: host"));
  EXPECT_THAT(reports(), IsEmpty());
  EXPECT_EQ(toolkit->closings, 1);
  EXPECT_TRUE(isGone());
}

KIFO_ON_EACH_TOOLKIT(AnswerTest);

}  // namespace
}  // namespace kifo::testing
