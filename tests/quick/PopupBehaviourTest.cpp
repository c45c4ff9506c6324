// What a user does with a popup by mouse, keyboard and assistive technology, and what becomes of
// it: the same in both toolkits.
#include <QAccessible>
#include <QClipboard>

#include "testing/ui/User.h"
#include "tests/quick/PopupToolkit.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using MakeToolkit = std::unique_ptr<PopupToolkit> (*)();

class PopupBehaviourTest : public ::testing::TestWithParam<std::pair<const char*, MakeToolkit>> {
 protected:
  PopupBehaviourTest()
      : toolkit(GetParam().second()), user(toolkit->window(), [] { return QImage(); }) {
    options.reducedMotion = true;
    item->uuid = "uuid-1";
    request->preferences.appCommunicationItem = item;
    request->preferences.controller = screen;
    request->preferences.pageName = "home";
    request->reporter = reporter;
    request->actionItem = [this](auto button) { calls.push_back("action " + *button->text); };
    request->actionBodyItem = [this](auto button) {
      calls.push_back("body " + *button->action->link);
    };
    request->submitButtonItem = [this](auto button) { calls.push_back("submit " + *button->text); };
  }

  ~PopupBehaviourTest() override {
    toolkit.reset();
    settle();
  }

  void campaign(const std::string& type) {
    item->type = type;
    PopupPreferences& p = request->preferences;
    p.type = type;
    p.title = "Your opinion counts";
    p.backgroundColor = Color::white();
    item->bgColor = "#FFFFFF";
  }
  void submitButton() {
    item->submitButton = request->preferences.submitButton =
        option("submit", "Send", "#0A5CD8", "#FFFFFF");
  }
  void choices(int count) {
    for (int i = 1; i <= count; ++i) {
      const std::string number = std::to_string(i);
      request->preferences.choices.push_back(option("c" + number, "Choice " + number));
    }
  }

  void present() {
    toolkit->present(request, options);
    settle();
  }
  void settle() {
    fake.runUntilIdle();
    for (int i = 0; i < 3; ++i) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }
  void click(const char* name) {
    user.click(name);
    settle();
  }
  void key(Qt::Key code, Qt::KeyboardModifiers modifiers = {}) {
    user.press(code, 1, modifiers);
    QCoreApplication::processEvents();
  }
  static std::string focused() {
    const QObject* object = QGuiApplication::focusObject();
    return object ? object->objectName().toStdString() : "";
  }
  std::vector<std::string> tabRound(int steps) {
    std::vector<std::string> names;
    for (int i = 0; i < steps; ++i) {
      key(Qt::Key_Tab);
      names.push_back(focused());
    }
    return names;
  }
  QAccessibleInterface* piece(const char* objectName, int index = 0) {
    QAccessibleInterface* found = user.object(objectName, index);
    if (!found) throw std::runtime_error(std::string("there is no ") + objectName);
    return found;
  }
  QString text(const char* objectName) { return piece(objectName)->text(QAccessible::Name); }
  std::vector<RecordingReporter::Report>& reports() { return reporter->reports; }

  InstalledFakePlatform fake;
  std::shared_ptr<RecordingReporter> reporter = std::make_shared<RecordingReporter>();
  std::shared_ptr<Screen> screen = std::make_shared<Screen>();
  std::shared_ptr<AppCommunicationItem> item = std::make_shared<AppCommunicationItem>();
  std::shared_ptr<PopupRequest> request = std::make_shared<PopupRequest>();
  PopUpOptions options;
  std::unique_ptr<PopupToolkit> toolkit;
  User user;
  std::vector<std::string> calls;
};

TEST_P(PopupBehaviourTest, AButtonRunsItsCallbackOnceAndClosesWithoutAReportOfItsOwn) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes"), option("b2", "No")};
  present();
  click("No");
  EXPECT_THAT(calls, ElementsAre("action No"));
  EXPECT_THAT(reports(), IsEmpty());
  EXPECT_EQ(toolkit->closings, 1);
  EXPECT_EQ(toolkit->state(), nullptr);
}

TEST_P(PopupBehaviourTest, ASurveyWaitsForAChoiceAndSendsTheLastOneOnce) {
  campaign("SURVEY");
  choices(3);
  submitButton();
  present();
  EXPECT_EQ(piece("submitButton")->text(QAccessible::Description), "Choose an answer first");
  click("Send");
  EXPECT_THAT(calls, ElementsAre("submit Send"));
  EXPECT_THAT(reports(), IsEmpty());
  ASSERT_TRUE(toolkit->state());
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

TEST_P(PopupBehaviourTest, AnEmojiIsPickedAndItsTextIsShownForAMoment) {
  campaign("EMOJI");
  request->preferences.choices = {option("e1", "Bad"), option("e2", "Good")};
  submitButton();
  present();
  click("Good");
  EXPECT_TRUE(user.named("Good")->state().checked);
  EXPECT_EQ(text("emojiText"), "Good");
  click("Send");
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].answer.choiseField->choiseId, "e2");
}

TEST_P(PopupBehaviourTest, AScoreIsSentWithWhatWasTyped) {
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

TEST_P(PopupBehaviourTest, AThumbFollowsTheFingerAndGoesToTheWholeScoreWhenItIsLetGo) {
  campaign("SCORE");
  item->maxScore = 4;
  present();
  const QRect slider = piece("slider")->rect();
  QWindow& window = toolkit->window();
  const QPoint at =
      window.mapFromGlobal(QPoint(slider.left() + slider.width() * 2 / 3, slider.center().y() + 6));
  QTest::mousePress(&window, Qt::LeftButton, {}, at);
  EXPECT_NEAR(toolkit->state()->sliderValue, 2.7, 0.2);
  QTest::mouseRelease(&window, Qt::LeftButton, {}, at);
  EXPECT_EQ(toolkit->state()->sliderValue, 2.f);
}

TEST_P(PopupBehaviourTest, FreeTextTakes150BytesAndForgetsItsTextWithItsChoice) {
  campaign("SURVEY");
  item->defaultFreeTextCheckBox = false;
  item->defaultFreeText = DefaultFreeText{std::nullopt, "Which one?"};
  choices(2);
  request->preferences.choices[1]->freeTextQuestionCheckBox = true;
  submitButton();
  present();
  EXPECT_EQ(user.named("Which one?"), nullptr);
  click("Choice 2");
  EXPECT_EQ(focused(), "textField");
  user.type(" ");  // refused at the start
  user.type(QString(149, 'a') + "é");
  EXPECT_EQ(toolkit->state()->freeText, std::string(149, 'a'));
  click("Choice 1");
  EXPECT_EQ(user.named("Which one?"), nullptr);
  EXPECT_EQ(toolkit->state()->freeText, "");
}

TEST_P(PopupBehaviourTest, ATouchOfTheBodyFollowsTheItemsActionAndADragDoesNot) {
  campaign("SURVEY");
  choices(12);
  item->action = std::make_shared<AppCommunicationItemAction>();
  item->action->link = "app://offers";
  present();
  QWindow& window = toolkit->window();
  const QPoint body = window.mapFromGlobal(user.object("popupTitle")->rect().center());
  QTest::mousePress(&window, Qt::LeftButton, {}, body);
  QTest::mouseMove(&window, body + QPoint(0, 30));
  QTest::mouseMove(&window, body + QPoint(0, 60));
  QTest::mouseRelease(&window, Qt::LeftButton, {}, body + QPoint(0, 60));
  EXPECT_THAT(calls, IsEmpty());
  QTest::mouseClick(&window, Qt::LeftButton, {}, body);
  settle();
  EXPECT_THAT(calls, ElementsAre("body app://offers"));
  EXPECT_THAT(reports(), IsEmpty());
  EXPECT_EQ(toolkit->closings, 1);
}

TEST_P(PopupBehaviourTest, AFingerDrawnOverAListScrollsItAndChoosesNothing) {
  campaign("SURVEY");
  choices(12);
  present();
  QWindow& window = toolkit->window();
  const int before = user.named("Choice 3")->rect().y();
  const QPoint from = window.mapFromGlobal(user.named("Choice 3")->rect().center());
  QTest::mousePress(&window, Qt::LeftButton, {}, from);
  for (int y = 20; y <= 80; y += 20) QTest::mouseMove(&window, from - QPoint(0, y));
  QTest::mouseRelease(&window, Qt::LeftButton, {}, from - QPoint(0, 80));
  EXPECT_LT(user.named("Choice 3")->rect().y(), before - 20);
  EXPECT_EQ(toolkit->state()->selectActionItem, nullptr);
}

TEST_P(PopupBehaviourTest, CopyingTheCouponPutsItsCodeOnThePasteboard) {
  campaign("POPUP");
  item->coupon = Coupon{{"SUMMER10", "000000", "FFFFFF", {}},
                        {{"Copy", "FFFFFF", "000000", {}}, {"Copied", "112233", "00FF00", {}}},
                        {"000000", "2"}};
  present();
  click("Copy");
  EXPECT_EQ(fake.pasteboard->string.get(), "SUMMER10");
  EXPECT_EQ(text("copyButton"), "Copied");
}

TEST_P(PopupBehaviourTest, WhatTheUserTypesWhenAPopupAppearsPressesNothingAndReachesNoField) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes")};
  present();
  for (const auto code : {Qt::Key_Space, Qt::Key_Return, Qt::Key_A}) key(code);
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_EQ(toolkit->hostText(), "");
}

TEST_P(PopupBehaviourTest, TabGoesRoundInsideThePopup) {
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

TEST_P(PopupBehaviourTest, ASurveyIsOneStopAndItsArrowsMoveWithinIt) {
  campaign("SURVEY");
  choices(20);
  submitButton();
  present();
  EXPECT_THAT(tabRound(4),
              ElementsAre("selectButton", "submitButton", "closeButton", "selectButton"));
  for (const auto code : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Space}) key(code);
  EXPECT_EQ(toolkit->state()->selectActionItem, request->preferences.choices[2]);
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

TEST_P(PopupBehaviourTest, AnAnswerCanBeGivenWithoutAMouse) {
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

TEST_P(PopupBehaviourTest, PagesCanBeTurnedAndAnItemsActionFollowedWithoutAMouse) {
  campaign("POPUP");
  request->preferences.images = {"https://p.example/1", "https://p.example/2"};
  item->action = std::make_shared<AppCommunicationItemAction>();
  item->action->link = "app://offers";
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

TEST_P(PopupBehaviourTest, EscapeClosesFromEverywhereAndTheHostHasTheFocusAgain) {
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
}

TEST_P(PopupBehaviourTest, OptionsWithoutATextAreNumberedAndABodyWithAnActionIsALink) {
  campaign("EMOJI");
  request->preferences.choices = {option("a", ""), option("b", " ")};
  item->submitButton = request->preferences.submitButton = option("s", "");
  item->action = std::make_shared<AppCommunicationItemAction>();
  item->action->link = "app://offers";
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
  EXPECT_THAT(calls, ElementsAre("body app://offers"));
}

TEST_P(PopupBehaviourTest, AKeyboardLiftsTheViewAndATallPanelKeepsItsFieldInSight) {
  toolkit->resize({320, 480});
  campaign("OPEN_ENDED");
  request->preferences.detailText = std::string(600, 'x');
  submitButton();
  present();
  key(Qt::Key_Tab);
  toolkit->keyboard({0, 280, 320, 200});
  settle();
  const QPoint origin = toolkit->window().mapToGlobal(QPoint());
  const QRect seen(0, 0, 320, 280);
  EXPECT_TRUE(toolkit->state()->isKeyboardSizeAdded);
  EXPECT_TRUE(seen.contains(piece("closeButton")->rect().translated(-origin)));
  EXPECT_TRUE(seen.contains(piece("textField")->rect().translated(-origin)));
  toolkit->keyboard({});
  EXPECT_FALSE(toolkit->state()->isKeyboardSizeAdded);
}

INSTANTIATE_TEST_SUITE_P(Toolkits, PopupBehaviourTest,
                         ::testing::Values(std::pair("widgets", &PopupToolkit::widgets),
                                           std::pair("quick", &PopupToolkit::quick)),
                         [](const auto& info) { return std::string(info.param.first); });

}  // namespace
}  // namespace kifo::testing
