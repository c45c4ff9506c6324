#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertTimeout.h"

#include <limits>

#include "tests/alert/AlertFixture.h"

namespace kifo::testing {
namespace {

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
  EXPECT_EQ(clock.secondsLeft(), 3599);
  const_cast<QTimer&>(clock.timeoutTimer()).start(10'000);  // as after a long block of the thread
  clock.tick();
  EXPECT_EQ(clock.secondsLeft(), 10) << "the ticks that were missed count";
  clock.setHeld(true);
  EXPECT_FALSE(clock.timeoutTimer().isActive());
  EXPECT_FALSE(clock.showTimeoutTimer().isActive());
  EXPECT_EQ(clock.secondsLeft(), 10);
  clock.setHeld(false);
  EXPECT_TRUE(clock.timeoutTimer().isActive());
  EXPECT_TRUE(clock.showTimeoutTimer().isActive());
  EXPECT_LE(clock.timeoutTimer().interval(), 10'000);

  clock.setHeld(true);
  clock.start(kHour, false);
  EXPECT_FALSE(clock.timeoutTimer().isActive()) << "a new time waits as well";
}

template <class Toolkit>
class AlertTimeoutTest : public AlertFixture<Toolkit> {
 protected:
  using Alert = typename Toolkit::Alert;

  std::shared_ptr<Alert> showFor(double seconds, std::function<void()> action = {},
                                 bool pauses = false) {
    const auto alert = this->makeAlert();
    alert->addButton("Stay", {}, {}, ShowTimeoutConfiguration{"(", " s)"}, [] {});
    alert->showWarning("Still there?", "", "Leave",
                       KifoTimeoutConfiguration{seconds, std::move(action), pauses});
    return alert;
  }
  static QString titleOf(const Alert& alert) { return Toolkit::titleOf(*alert.buttons().front()); }
  static bool isHeld(const Alert& alert) {
    return alert.template findChild<AlertTimeout*>()->isHeld();
  }
  void point(QPoint at) {
    QTest::mouseMove(&this->toolkit.window(), at);
    QCoreApplication::processEvents();
  }
};
TYPED_TEST_SUITE(AlertTimeoutTest, AlertToolkits);

TYPED_TEST(AlertTimeoutTest, WhenTheTimeIsUpTheActionRunsOnceAndTheAlertHides) {
  std::vector<bool> shownThen;
  std::shared_ptr<typename TypeParam::Alert> alert;
  alert = this->showFor(0.02, [&] {
    shownThen.push_back(alert->isShowing());
    alert->hideViewTimeout();
  });
  EXPECT_TRUE(QTest::qWaitFor([&] { return !alert->isShowing(); }, 20000));
  alert->hideViewTimeout();
  EXPECT_THAT(shownThen, ElementsAre(true));
}

TYPED_TEST(AlertTimeoutTest, ATimeThatIsUpWhileTheAlertHidesIsTooLate) {
  const auto alert = this->showFor(kHour, [] { FAIL(); });
  alert->motion.reduced = false;
  alert->hideView();
  alert->hideViewTimeout();
  alert->updateShowTimeout();
  EXPECT_FALSE(alert->isShowing());
  EXPECT_TRUE(QTest::qWaitFor([&] { return this->toolkit.overlays().empty(); }, 20000));
}

TYPED_TEST(AlertTimeoutTest, TheActionMayShowTheAlertAnew) {
  std::shared_ptr<typename TypeParam::Alert> alert;
  alert = this->showFor(kHour, [&] { alert->showInfo("Signed out", "", "OK"); });
  alert->hideViewTimeout();
  EXPECT_TRUE(alert->isShowing());
  EXPECT_FALSE(this->textBox("Signed out").isEmpty());
  EXPECT_EQ(this->titleOf(*alert), "Stay") << "there is nothing left to count";
}

TYPED_TEST(AlertTimeoutTest, TheSecondsAreCountedInTheTitlesThatShowThem) {
  const auto alert = this->showFor(3);
  std::vector<QString> titles;
  for (int second = 0; second < 5; ++second) {
    titles.push_back(this->titleOf(*alert));
    alert->updateShowTimeout();
  }
  EXPECT_THAT(titles,
              ElementsAre("Stay (3 s)", "Stay (2 s)", "Stay (1 s)", "Stay (0 s)", "Stay (0 s)"));
  EXPECT_EQ(TypeParam::titleOf(*alert->buttons().back()), "Leave");
}

TYPED_TEST(AlertTimeoutTest, AButtonThatComesLaterCountsDownToo) {
  const auto alert = this->makeAlert();
  alert->showInfo("Later", "", "OK", KifoTimeoutConfiguration{60, {}});
  const auto* clock = alert->template findChild<AlertTimeout*>();
  EXPECT_FALSE(clock->showTimeoutTimer().isActive()) << "nobody wants to know";
  alert->addButton("Wait", {}, {}, ShowTimeoutConfiguration{"(", " s)"}, [] {});
  EXPECT_EQ(this->titleOf(*alert), "Wait (60 s)");
  EXPECT_TRUE(clock->showTimeoutTimer().isActive());
}

TYPED_TEST(AlertTimeoutTest, ThePointerOnTheCardHoldsTheClockIfTheHostAsksForIt) {
  for (const bool asked : {false, true}) {
    const auto alert = this->showFor(kHour, {}, asked);
    this->point({2, 2});
    EXPECT_FALSE(this->isHeld(*alert)) << "the focus that the alert took by itself does not count";
    this->point(this->toolkit.card(*alert).center());
    EXPECT_EQ(this->isHeld(*alert), asked);
    this->point({2, 2});
    EXPECT_FALSE(this->isHeld(*alert));
    alert->hideView();
  }
}

TYPED_TEST(AlertTimeoutTest, AUserAtTheKeyboardHoldsTheClockUntilTheWindowIsLeft) {
  const auto typed = this->makeAlert();
  typed->addTextField("Name");
  typed->showEdit("Who?", "", "OK", KifoTimeoutConfiguration{kHour, {}, true});
  this->user.type("A");
  EXPECT_TRUE(this->isHeld(*typed));
  typed->hideView();
  const auto alert = this->showFor(kHour, {}, true);
  this->press(Qt::Key_Tab);
  EXPECT_TRUE(this->isHeld(*alert));
  QWidget elsewhere;
  elsewhere.show();
  elsewhere.activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !this->isHeld(*alert); }, 20000));
}

}  // namespace
}  // namespace kifo::testing
