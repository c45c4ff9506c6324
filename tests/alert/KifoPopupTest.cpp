// What a user does with an alert by mouse and finger, and what is shown of it.
#include <QAccessible>
#include <stdexcept>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "tests/alert/AlertFixture.h"

namespace kifo::testing {
namespace {

using ::testing::ThrowsMessage;

template <class Toolkit>
class AlertTest : public AlertFixture<Toolkit> {};
TYPED_TEST_SUITE(AlertTest, AlertToolkits);

/// What a host hands over as target of a button.
class Bell : public QObject {
  Q_OBJECT
 public:
  int rung = 0;
 public Q_SLOTS:
  void ring() { ++rung; }
};

TYPED_TEST(AlertTest, APressRunsTheClosureOnceAndThenHides) {
  const auto alert = this->makeAlert();
  std::vector<bool> shownWhenPressed;
  alert->addButton("Pay", [&] { shownWhenPressed.push_back(alert->isShowing()); });
  alert->showSuccess("Pay?", "12.90", "Not yet");
  ASSERT_TRUE(alert->isShowing());
  alert->motion.reduced = false;
  const QPoint pay = this->box("Pay").center();
  this->clickAt(pay);
  this->clickAt(pay);
  EXPECT_THAT(shownWhenPressed, ElementsAre(true));
  EXPECT_FALSE(alert->isShowing());
  EXPECT_TRUE(QTest::qWaitFor([this] { return this->toolkit.overlays().empty(); }, 20000));
}

TYPED_TEST(AlertTest, AnAlertThatStaysIsClosedByItsCloseButtonOnlyWhichIsTheLast) {
  const auto alert = this->makeAlert({.shouldAutoDismiss = false});
  int presses = 0;
  alert->showInfo("Count", "", "Enough");
  alert->addButton("More", [&] { ++presses; });
  EXPECT_LT(this->box("More").bottom(), this->box("Enough").top());
  this->click("More");
  this->click("More");
  EXPECT_EQ(presses, 2);
  EXPECT_TRUE(alert->isShowing());
  this->click("Enough");
  EXPECT_FALSE(alert->isShowing());
}

TYPED_TEST(AlertTest, AButtonWithoutAnActionOrWithOneThatThrowsSaysSoAndStillHides) {
  const std::pair<KifoButtonActionType, const char*> cases[] = {
      {KifoButtonActionType::none, "Kifo KifoPopup: Unknow action type for button"},
      {KifoButtonActionType::closure, "Kifo KifoPopup: a host callback threw: no paper"}};
  for (const auto& [type, line] : cases) {
    const auto alert = this->makeAlert();
    auto* button = alert->addButton("Print", [] { throw std::runtime_error("no paper"); });
    button->actionType = type;
    alert->showNotice("Printer");
    this->click("Print");
    EXPECT_THAT(this->fake.console->take(), ElementsAre(line));
    EXPECT_FALSE(alert->isShowing());
  }
}

TYPED_TEST(AlertTest, ASelectorIsInvokedOnItsTargetAndAMissingOneIsAConsoleLine) {
  auto bell = std::make_unique<Bell>();
  const auto alert = this->makeAlert({.shouldAutoDismiss = false});
  alert->addButton("Plain", {}, {}, {}, bell.get(), "ring");
  alert->addButton("Bracketed", {}, {}, {}, bell.get(), "ring()");
  alert->addButton("Wrong", {}, {}, {}, bell.get(), "sing");
  alert->showNotice("Bell");

  this->click("Plain");
  this->click("Bracketed");
  EXPECT_EQ(bell->rung, 2);
  EXPECT_THAT(this->fake.console->take(), IsEmpty());

  this->click("Wrong");
  EXPECT_THAT(this->fake.console->take(),
              ElementsAre(AllOf(HasSubstr("KifoPopup:"), HasSubstr("sing"))));

  bell.reset();
  this->click("Plain");
  EXPECT_THAT(this->fake.console->take(), IsEmpty());
  EXPECT_TRUE(alert->isShowing());
}

TYPED_TEST(AlertTest, AnotherShowCallChangesTheAlertThatIsShown) {
  const auto alert = this->makeAlert();
  alert->showWait("One moment", "Looking for the printer", "Stop");
  ASSERT_THAT(alert->buttons(), SizeIs(1));
  const auto responder = alert->showSuccess("Printed", "Two pages");
  EXPECT_THAT(this->toolkit.overlays(), SizeIs(1));
  EXPECT_FALSE(this->textBox("Printed").isEmpty());
  EXPECT_THAT(alert->buttons(), IsEmpty());
  EXPECT_EQ(alert->viewColor, QColor(0x22, 0xB5, 0x73));
  responder.setTitle("Done");
  responder.setSubTitle("Three pages");
  EXPECT_FALSE(this->textBox("Done").isEmpty());
  EXPECT_FALSE(this->textBox("Three pages").isEmpty());
}

TYPED_TEST(AlertTest, ATapOnTheBackgroundHidesOnlyWhereThatIsWanted) {
  for (const bool byFinger : {false, true}) {
    const auto touch = [&](QPoint place) { byFinger ? this->tapAt(place) : this->clickAt(place); };
    for (const bool wanted : {false, true}) {
      for (const bool tapsDisabled : {false, true}) {
        SCOPED_TRACE(::testing::Message() << byFinger << wanted << tapsDisabled);
        const auto alert = this->makeAlert(
            {.disableTapGesture = tapsDisabled, .hideWhenBackgroundViewIsTapped = wanted});
        alert->showInfo("Tap", "", "OK");
        touch(this->textBox("Tap").center());
        touch(this->toolkit.card(*alert).center() - QPoint(0, 40));
        EXPECT_TRUE(alert->isShowing()) << "a tap on the card hid it";
        touch({3, 596});
        EXPECT_EQ(alert->isShowing(), !wanted || tapsDisabled);
        if (alert->isShowing()) touch(this->box("OK").center());
        EXPECT_FALSE(alert->isShowing());
      }
    }
  }
}

TYPED_TEST(AlertTest, TheCrossAppearsWhereNothingElseWouldLetTheUserOut) {
  const auto alert = this->makeAlert();
  const auto hasCross = [&] { return this->user.named("Close") != nullptr; };
  alert->showInfo("Read this", "", "OK");
  EXPECT_FALSE(hasCross());
  alert->showWait("One moment");
  EXPECT_FALSE(hasCross());
  alert->closeIcon = QIcon(QPixmap(16, 16));
  alert->showInfo("Read this", "", "OK");
  EXPECT_TRUE(hasCross());
  alert->closeIcon = {};
  alert->showInfo("Read this");
  ASSERT_TRUE(hasCross());
  this->click("Close");
  EXPECT_FALSE(alert->isShowing());
}

TYPED_TEST(AlertTest, TheWaitTurnsWhileItIsShown) {
  const auto alert = this->makeAlert();
  alert->showWait("One moment");
  this->settle();
  const QImage first = this->toolkit.picture();
  EXPECT_TRUE(QTest::qWaitFor([&] { return this->toolkit.picture() != first; }, 20000));
}

TYPED_TEST(AlertTest, AssistiveTechnologyReadsWhatIsShownAndIsToldWhenItChanges) {
  const auto alert = this->makeAlert();
  alert->addTextField("Name");
  auto* button = alert->addButton("Stay", {}, {}, ShowTimeoutConfiguration{"(", " s)"}, [] {});
  alert->showError("Printer", "There is no paper", "OK", KifoTimeoutConfiguration{60, {}});
  QAccessibleInterface* told = this->user.overlay();
  EXPECT_EQ(told->text(QAccessible::Name), "Printer");
  EXPECT_EQ(told->text(QAccessible::Description), "There is no paper");
  alert->setSubTitle("There is paper");
  EXPECT_EQ(told->text(QAccessible::Description), "There is paper");
  EXPECT_EQ(TypeParam::titleOf(*button), "Stay (60 s)");
  EXPECT_EQ(this->user.named("Stay")->text(QAccessible::Description), "(60 s)");
  EXPECT_EQ(this->user.named("Name")->role(), QAccessible::EditableText);
}

TYPED_TEST(AlertTest, ACallFromAnotherThreadIsRefused) {
  const auto alert = this->makeAlert();
  std::thread([&] { alert->showInfo("Elsewhere"); }).join();
  EXPECT_FALSE(alert->isShowing());
  EXPECT_THAT(this->fake.console->lines(), ElementsAre(HasSubstr("UI thread")));
}

class KifoPopupTest : public AlertFixture<WidgetsAlerts> {};

TEST_F(KifoPopupTest, TheWaitOfAHiddenAlertDoesNotTurn) {
  const auto alert = makeAlert();
  alert->showWait("One moment");
  const auto picture = [&] { return alert->circleIconView()->grab().toImage(); };
  alert->hideView();
  const QImage last = picture();
  QTimerEvent tick(1);
  QCoreApplication::sendEvent(alert->circleIconView(), &tick);
  EXPECT_EQ(picture(), last);
}

TEST_F(KifoPopupTest, WithoutAWindowTheAlertBringsItsOwn) {
  toolkit.destroy();
  settle();
  const auto alert = std::make_shared<KifoPopup>();
  alert->motion.reduced = true;
  alert->showInfo("Alone", "", "OK");
  EXPECT_TRUE(alert->baseView()->isVisible());
  alert->buttons().front()->click();
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

#ifdef KIFO_WITH_QUICK
class QuickAlertTest : public AlertFixture<QuickAlerts> {};

TEST_F(QuickAlertTest, ShowsInItsHostsWindowAndWithoutAnyNotAtAllAndSaysSo) {
  {
    const QuickAlerts inUse;
    const auto alert = makeAlert();
    alert->showInfo("Here", "", "OK");
    EXPECT_THAT(toolkit.overlays(), SizeIs(1));
    alert->hideView();
  }
  toolkit.hide();
  const auto alert = std::make_shared<QuickAlert>();
  fake.console->take();
  alert->showInfo("Alone", "", "OK");
  EXPECT_FALSE(alert->isShowing());
  EXPECT_THAT(fake.console->take(), ElementsAre(HasSubstr("there is no window for it")));
}
#endif

}  // namespace
}  // namespace kifo::testing

#include "KifoPopupTest.moc"
