#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"

#include <QAccessible>
#include <stdexcept>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "tests/alert/AlertFixture.h"

namespace kifo {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::ThrowsMessage;

class KifoPopupTest : public AlertFixture {};

/// What a host hands over as target of a button.
class Bell : public QObject {
  Q_OBJECT
 public:
  int rung = 0;
 public Q_SLOTS:
  void ring() { ++rung; }
};

TEST_F(KifoPopupTest, APressRunsTheClosureOnceAndThenHides) {
  const auto alert = makeAlert();
  std::vector<bool> shownWhenPressed;
  KifoButton* button =
      alert->addButton("Pay", [&] { shownWhenPressed.push_back(alert->isShowing()); });
  alert->showSuccess("Pay?", "12.90", "Not yet");
  ASSERT_TRUE(alert->isShowing());
  alert->motion.reduced = false;

  click(button);
  click(button);
  EXPECT_THAT(shownWhenPressed, ElementsAre(true));
  EXPECT_FALSE(alert->isShowing());
  EXPECT_TRUE(QTest::qWaitFor([this] { return overlays().empty(); }, 20000));
}

TEST_F(KifoPopupTest, AnAlertThatStaysIsClosedByItsCloseButtonOnlyWhichIsTheLast) {
  KifoAppearance appearance;
  appearance.shouldAutoDismiss = false;
  const auto alert = makeAlert(appearance);
  int presses = 0;
  alert->showInfo("Count", "", "Enough");
  KifoButton* button = alert->addButton("More", [&] { ++presses; });
  ASSERT_EQ(alert->buttons().back()->text(), "Enough");
  EXPECT_LT(button->geometry().bottom(), alert->buttons().back()->y());
  click(button);
  click(button);
  EXPECT_EQ(presses, 2);
  EXPECT_TRUE(alert->isShowing());
  click(alert->buttons().back());
  EXPECT_FALSE(alert->isShowing());
}

TEST_F(KifoPopupTest, AButtonWithoutAnActionOrWithOneThatThrowsSaysSoAndStillHides) {
  const std::pair<KifoButtonActionType, const char*> cases[] = {
      {KifoButtonActionType::none, "Kifo KifoPopup: Unknow action type for button"},
      {KifoButtonActionType::closure, "Kifo KifoPopup: a host callback threw: no paper"}};
  for (const auto& [type, line] : cases) {
    const auto alert = makeAlert();
    KifoButton* button = alert->addButton("Print", [] { throw std::runtime_error("no paper"); });
    button->actionType = type;
    alert->showNotice("Printer");
    click(button);
    EXPECT_THAT(fake.console->take(), ElementsAre(line));
    EXPECT_FALSE(alert->isShowing());
  }
}

TEST_F(KifoPopupTest, ASelectorIsInvokedOnItsTargetAndAMissingOneIsAConsoleLine) {
  auto bell = std::make_unique<Bell>();
  KifoAppearance appearance;
  appearance.shouldAutoDismiss = false;
  const auto alert = makeAlert(appearance);
  KifoButton* plain = alert->addButton("Ring", {}, {}, {}, bell.get(), "ring");
  KifoButton* bracketed = alert->addButton("Ring", {}, {}, {}, bell.get(), "ring()");
  KifoButton* wrong = alert->addButton("Sing", {}, {}, {}, bell.get(), "sing");
  alert->showNotice("Bell");

  click(plain);
  click(bracketed);
  EXPECT_EQ(bell->rung, 2);
  EXPECT_THAT(fake.console->take(), IsEmpty());

  click(wrong);
  EXPECT_THAT(fake.console->take(), ElementsAre(AllOf(HasSubstr("KifoPopup:"), HasSubstr("sing"))));

  bell.reset();
  click(plain);
  EXPECT_THAT(fake.console->take(), IsEmpty());
  EXPECT_TRUE(alert->isShowing());
}

TEST_F(KifoPopupTest, AnotherShowCallChangesTheAlertThatIsShown) {
  const auto alert = makeAlert();
  alert->showWait("One moment", "Looking for the printer", "Stop");
  ASSERT_EQ(alert->buttons().size(), 1);

  const auto responder = alert->showSuccess("Printed", "Two pages");

  EXPECT_EQ(overlays().size(), 1);
  EXPECT_EQ(alert->labelTitle()->text(), "Printed");
  EXPECT_THAT(alert->buttons(), IsEmpty());
  EXPECT_EQ(alert->viewColor, QColor(0x22, 0xB5, 0x73));
  responder.setTitle("Done");
  responder.setSubTitle("Three pages");
  EXPECT_EQ(alert->labelTitle()->text(), "Done");
  EXPECT_EQ(alert->viewText()->text(), "Three pages");
}

TEST_F(KifoPopupTest, ATapOnTheBackgroundHidesOnlyWhereThatIsWanted) {
  for (const bool wanted : {false, true}) {
    for (const bool tapsDisabled : {false, true}) {
      KifoAppearance appearance;
      appearance.hideWhenBackgroundViewIsTapped = wanted;
      appearance.disableTapGesture = tapsDisabled;
      const auto alert = makeAlert(appearance);
      alert->showInfo("Tap", "", "OK");
      click(alert->viewText());
      click(alert->baseView());
      EXPECT_TRUE(alert->isShowing()) << "a tap on the card hid it";
      clickBackground();
      EXPECT_EQ(alert->isShowing(), !wanted || tapsDisabled);
      alert->hideView();
    }
  }
}

TEST_F(KifoPopupTest, TheCrossAppearsWhereNothingElseWouldLetTheUserOut) {
  const auto alert = makeAlert();
  const auto cross = [&]() -> QAbstractButton* {
    for (auto* child : alert->baseView()->findChildren<QAbstractButton*>()) {
      if (qobject_cast<KifoButton*>(child) == nullptr && child->isVisible()) return child;
    }
    return nullptr;
  };
  alert->showInfo("Read this", "", "OK");
  EXPECT_EQ(cross(), nullptr);
  alert->showWait("One moment");
  EXPECT_EQ(cross(), nullptr);
  alert->closeIcon = QIcon(QPixmap(16, 16));
  alert->showInfo("Read this", "", "OK");
  EXPECT_NE(cross(), nullptr);
  alert->closeIcon = {};
  alert->showInfo("Read this");
  ASSERT_NE(cross(), nullptr);
  click(cross());
  EXPECT_FALSE(alert->isShowing());
}

TEST_F(KifoPopupTest, TheWaitTurnsOnlyWhileItCanBeSeen) {
  const auto alert = makeAlert();
  alert->showWait("One moment");
  const auto picture = [&] { return alert->circleIconView()->grab().toImage(); };
  const QImage first = picture();
  EXPECT_TRUE(QTest::qWaitFor([&] { return picture() != first; }, 20000));

  alert->hideView();
  const QImage last = picture();
  QTimerEvent tick(1);
  QCoreApplication::sendEvent(alert->circleIconView(), &tick);
  EXPECT_EQ(picture(), last);
}

TEST_F(KifoPopupTest, AssistiveTechnologyIsToldWhenTheTextChanges) {
  const auto alert = makeAlert();
  alert->showError("Printer", "There is no paper", "OK");

  QAccessibleInterface* told = QAccessible::queryAccessibleInterface(overlays().front());
  EXPECT_EQ(told->text(QAccessible::Description), "There is no paper");
  alert->setSubTitle("There is paper");
  EXPECT_EQ(told->text(QAccessible::Description), "There is paper");
}

TEST_F(KifoPopupTest, ACallFromAnotherThreadIsRefused) {
  const auto alert = makeAlert();
  std::thread([&] { alert->showInfo("Elsewhere"); }).join();
  EXPECT_FALSE(alert->isShowing());
  EXPECT_THAT(fake.console->lines(), ElementsAre(HasSubstr("UI thread")));
}

TEST_F(KifoPopupTest, WithoutAWindowTheAlertBringsItsOwn) {
  window.reset();
  settle();
  const auto alert = std::make_shared<KifoPopup>();
  alert->motion.reduced = true;
  alert->showInfo("Alone", "", "OK");
  EXPECT_TRUE(alert->baseView()->isVisible());
  click(alert->buttons().front());
  EXPECT_FALSE(alert->isShowing());
}

TEST_F(KifoPopupTest, AnArchivedAlertIsFatal) {
  setFatalErrorHandler([](std::string_view message) { throw std::runtime_error(message.data()); });
  QByteArray bytes;
  QDataStream archive(bytes);
  EXPECT_THAT([&] { KifoPopup alert(archive); },
              ThrowsMessage<std::runtime_error>("NSCoding not supported"));
  setFatalErrorHandler(nullptr);
}

}  // namespace
}  // namespace kifo

#include "KifoPopupTest.moc"
