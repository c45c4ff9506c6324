#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertTimeout.h"

#include <QSignalSpy>
#include <limits>

#include "tests/alert/AlertFixture.h"

namespace kifo {
namespace {

using ::testing::ElementsAre;

constexpr double kHour = 3600;

TEST(KifoPopupTimeoutClockTest, OnlyAPositiveTimeIsATimeOut) {
  AlertTimeout clock;
  for (const double none : {0.0, -5.0, std::nan(""), -std::numeric_limits<double>::infinity()}) {
    clock.start(none, true);
    EXPECT_EQ(clock.secondsLeft(), std::nullopt);
    EXPECT_FALSE(clock.timeoutTimer().isActive());
  }
  clock.start(std::numeric_limits<double>::infinity(), true);
  EXPECT_TRUE(clock.timeoutTimer().isActive());
  EXPECT_GT(clock.timeoutTimer().interval(), 0);
}

TEST(KifoPopupTimeoutClockTest, WhileItIsHeldNothingIsLost) {
  AlertTimeout clock;
  clock.start(kHour, true);
  clock.tick();
  clock.setHeld(true);
  EXPECT_FALSE(clock.timeoutTimer().isActive());
  EXPECT_FALSE(clock.showTimeoutTimer().isActive());
  EXPECT_EQ(clock.secondsLeft(), 3599);
  clock.setHeld(false);
  EXPECT_TRUE(clock.timeoutTimer().isActive());
  EXPECT_TRUE(clock.showTimeoutTimer().isActive());
  EXPECT_LE(clock.timeoutTimer().interval(), 3600000);
  EXPECT_GT(clock.timeoutTimer().interval(), 3500000);

  clock.setHeld(true);
  clock.start(kHour, false);
  EXPECT_FALSE(clock.timeoutTimer().isActive()) << "a new time waits as well";
}

class AlertTimeoutTest : public AlertFixture {
 protected:
  std::shared_ptr<KifoPopup> showFor(double seconds, std::function<void()> action = {},
                                     bool pauses = false) {
    const auto alert = makeAlert();
    alert->addButton("Stay", {}, {}, ShowTimeoutConfiguration{"(", " s)"}, [] {});
    alert->showWarning("Still there?", "", "Leave",
                       KifoTimeoutConfiguration{seconds, std::move(action), pauses});
    return alert;
  }
  static bool isHeld(const KifoPopup& alert) { return alert.findChild<AlertTimeout*>()->isHeld(); }
  static void point(QWidget* widget, QPoint at) {
    QTest::mouseMove(widget, at);
    QCoreApplication::processEvents();
  }
};

TEST_F(AlertTimeoutTest, WhenTheTimeIsUpTheActionRunsOnceAndTheAlertHides) {
  std::vector<bool> shownThen;
  std::shared_ptr<KifoPopup> alert;
  alert = showFor(0.02, [&] {
    shownThen.push_back(alert->isShowing());
    alert->hideViewTimeout();
  });
  EXPECT_TRUE(QTest::qWaitFor([&] { return !alert->isShowing(); }, 20000));
  alert->hideViewTimeout();
  EXPECT_THAT(shownThen, ElementsAre(true));
}

TEST_F(AlertTimeoutTest, ATimeThatIsUpWhileTheAlertHidesIsTooLate) {
  const auto alert = showFor(kHour, [] { FAIL(); });
  alert->motion.reduced = false;
  alert->hideView();
  alert->hideViewTimeout();
  alert->updateShowTimeout();
  EXPECT_FALSE(alert->isShowing());
  EXPECT_TRUE(QTest::qWaitFor([&] { return overlays().empty(); }, 20000));
}

TEST_F(AlertTimeoutTest, TheActionMayShowTheAlertAnew) {
  std::shared_ptr<KifoPopup> alert;
  alert = showFor(kHour, [&] { alert->showInfo("Signed out", "", "OK"); });
  alert->hideViewTimeout();
  EXPECT_TRUE(alert->isShowing());
  EXPECT_EQ(alert->labelTitle()->text(), "Signed out");
  EXPECT_EQ(alert->buttons().front()->text(), "Stay") << "there is nothing left to count";
}

TEST_F(AlertTimeoutTest, TheSecondsAreCountedInTheTitlesThatShowThem) {
  const auto alert = showFor(3);
  std::vector<QString> titles;
  for (int second = 0; second < 5; ++second) {
    titles.push_back(alert->buttons().front()->text());
    alert->updateShowTimeout();
  }
  EXPECT_THAT(titles,
              ElementsAre("Stay (3 s)", "Stay (2 s)", "Stay (1 s)", "Stay (0 s)", "Stay (0 s)"));
  EXPECT_EQ(alert->buttons().back()->text(), "Leave");
  EXPECT_EQ(alert->buttons().front()->accessibleName(), "Stay");
}

TEST_F(AlertTimeoutTest, AButtonThatComesLaterCountsDownToo) {
  const auto alert = makeAlert();
  alert->showInfo("Later", "", "OK", KifoTimeoutConfiguration{60, {}});
  const auto* clock = alert->findChild<AlertTimeout*>();
  EXPECT_FALSE(clock->showTimeoutTimer().isActive()) << "nobody wants to know";
  KifoButton* button =
      alert->addButton("Wait", {}, {}, ShowTimeoutConfiguration{"(", " s)"}, [] {});
  EXPECT_EQ(button->text(), "Wait (60 s)");
  EXPECT_TRUE(clock->showTimeoutTimer().isActive());
}

TEST_F(AlertTimeoutTest, ThePointerOnTheCardHoldsTheClockIfTheHostAsksForIt) {
  for (const bool asked : {false, true}) {
    const auto alert = showFor(kHour, {}, asked);
    point(window.get(), QPoint(2, 2));
    EXPECT_FALSE(isHeld(*alert)) << "the focus that the alert took by itself does not count";
    point(alert->baseView(), alert->baseView()->rect().center());
    EXPECT_EQ(isHeld(*alert), asked);
    point(window.get(), QPoint(2, 2));
    EXPECT_FALSE(isHeld(*alert));
    alert->hideView();
  }
}

TEST_F(AlertTimeoutTest, AUserAtTheKeyboardHoldsTheClockUntilTheWindowIsLeft) {
  QWidget elsewhere;
  elsewhere.show();
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  const auto typed = makeAlert();
  QLineEdit* name = typed->addTextField("Name");
  typed->showEdit("Who?", "", "OK", KifoTimeoutConfiguration{kHour, {}, true});
  QTest::keyClicks(name, "A");
  EXPECT_TRUE(isHeld(*typed));
  typed->hideView();
  const auto alert = showFor(kHour, {}, true);
  press(Qt::Key_Tab);
  EXPECT_TRUE(isHeld(*alert));
  elsewhere.activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !isHeld(*alert); }, 20000));
}

}  // namespace
}  // namespace kifo
