// Who may take an alert away, and when.
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QProxyStyle>
#include <QTimer>

#include "tests/alert/AlertFixture.h"
#include "tests/support/StillDesktop.h"
#include "tests/views/Pixels.h"

namespace kifo::testing {
namespace {

template <class Toolkit>
class AlertLifeTest : public AlertFixture<Toolkit> {};
TYPED_TEST_SUITE(AlertLifeTest, AlertToolkits);

TYPED_TEST(AlertLifeTest, AnAlertThatNobodyHoldsLivesUntilItIsHiddenAndTellsOnce) {
  std::weak_ptr<typename TypeParam::Alert> life;
  const auto responder = [&] {
    const auto alert = this->makeAlert();
    alert->motion = {};  // It takes its time to come and to go.
    life = alert;
    return alert->showInfo("Alone", "", "OK");
  }();
  this->waitUntilCome();
  EXPECT_TRUE(responder.isShowing());
  int dismissed = 0;
  responder.setDismissBlock([&] {
    ++dismissed;
    responder.close();
  });
  responder.close();
  responder.close();
  EXPECT_FALSE(responder.isShowing());
  EXPECT_EQ(dismissed, 0) << "it is still to be seen";
  EXPECT_FALSE(life.expired()) << "it is still on its way out";
  EXPECT_TRUE(QTest::qWaitFor([&] { return life.expired(); }, 20000));
  this->settle();
  EXPECT_THAT(this->toolkit.overlays(), IsEmpty());
  EXPECT_EQ(dismissed, 1);

  responder.setTitle("late");
  responder.setSubTitle("late");
  responder.setDismissBlock([] { FAIL(); });
  responder.close();
  EXPECT_EQ(responder.alertview(), nullptr);
}

TYPED_TEST(AlertLifeTest, HalfwayThroughAFadeNoShadowIsSeenInsideTheCard) {
  const auto alert = this->makeAlert({.showCircularIcon = false});
  alert->motion.reduced = false;
  alert->motion.showDuration = std::chrono::hours(1);
  alert->showInfo("Title", "Text", "OK");
  advanceFade(*alert);
  this->settle();
  expectNoShadowInside(this->toolkit.picture(), this->toolkit.card(*alert));
  alert->motion.reduced = true;
}

TYPED_TEST(AlertLifeTest, ASecondPressWhileTheClosureRunsDoesNothing) {
  const auto alert = this->makeAlert();
  int presses = 0;
  alert->addButton("Yes", [&] {
    if (++presses > 1) return;
    const QPoint yes = this->box("Yes").center();
    QEventLoop nested;
    QTimer::singleShot(0, &nested, [&] {
      this->clickAt(yes);
      this->clickAt(yes);
      nested.quit();
    });
    nested.exec();
  });
  alert->showInfo("Title");
  this->click("Yes");
  EXPECT_EQ(presses, 1);
  EXPECT_FALSE(alert->isShowing());
}

TYPED_TEST(AlertLifeTest, AClosureMayShowAnotherAlert) {
  const auto first = this->makeAlert();
  const auto second = this->makeAlert();
  first->addButton("Next", [&] { second->showInfo("Second", "", "OK"); });
  first->showInfo("First");
  this->click("Next");
  EXPECT_FALSE(first->isShowing());
  EXPECT_TRUE(second->isShowing());
  EXPECT_EQ(this->focused(), "OK");
  this->click("OK");
  EXPECT_EQ(this->focused(), "hostField");
}

TYPED_TEST(AlertLifeTest, AClosureMayShowItsOwnAlertAnew) {
  const auto alert = this->makeAlert();
  alert->addButton("Again", [&] {
    alert->hideView();
    alert->showWarning("Second");
  });
  alert->showInfo("First");
  this->click("Again");
  EXPECT_TRUE(alert->isShowing()) << "the press was for the first showing";
  EXPECT_FALSE(this->textBox("Second").isEmpty());
  EXPECT_THAT(this->toolkit.overlays(), SizeIs(1));
}

TYPED_TEST(AlertLifeTest, AClosureMayDropTheLastReferenceToItsAlertAndWaitInADialogWhileItEnds) {
  auto alert = this->makeAlert();
  const std::weak_ptr<typename TypeParam::Alert> life = alert;
  QPointer<QObject> button;
  button = alert->addButton("Ask", [&] {
    alert->hideView();
    alert.reset();
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
      this->settle();
      EXPECT_FALSE(button.isNull()) << "its press is not over";
      loop.quit();
    });
    loop.exec();
  });
  alert->showInfo("Ask");
  this->click("Ask");
  EXPECT_TRUE(QTest::qWaitFor([&] { return button.isNull(); }, 20000));
  EXPECT_TRUE(life.expired());
}

TYPED_TEST(AlertLifeTest, AnAlertThatItsOwnerDestroysLeavesNothingBehind) {
  {
    typename TypeParam::Alert alert;
    this->toolkit.setUp(alert);
    alert.dismissBlock = [] { FAIL(); };
    alert.showInfo("Short", "", "OK");
    EXPECT_THAT(this->toolkit.overlays(), SizeIs(1));
  }
  EXPECT_THAT(this->toolkit.overlays(), IsEmpty());
  EXPECT_EQ(this->focused(), "hostField");
}

TYPED_TEST(AlertLifeTest, AnAlertCanBeShownAgainWithWhatItHas) {
  const auto alert = this->makeAlert();
  auto* name = alert->addTextField("Name");
  alert->showEdit("Who?", "", "OK");
  this->user.type("Ada");
  alert->hideView();
  alert->showEdit("Really?", "", "OK");
  EXPECT_FALSE(this->fieldBox("Name").isEmpty());
  EXPECT_EQ(name->text(), "Ada");
  EXPECT_THAT(alert->buttons(), SizeIs(1)) << "the first showing's close button has gone";
  alert->dismissBlock = [] { FAIL(); };
  this->toolkit.destroy();
  EXPECT_FALSE(alert->isShowing());
  alert->hideView();
  alert->setTitle("late");
  EXPECT_EQ(name->text(), "Ada") << "the window took the alert's card with it";
}

TYPED_TEST(AlertLifeTest, AShowCallOnAnAlertThatIsOnItsWayOutBringsItBack) {
  const auto alert = this->makeAlert();
  alert->motion = {};
  int dismissed = 0;
  alert->dismissBlock = [&] { ++dismissed; };
  alert->showInfo("First");
  this->waitUntilCome();
  alert->motion.hideDuration = std::chrono::hours(1);
  alert->hideView();
  EXPECT_EQ(dismissed, 0);
  alert->showInfo("Second");
  EXPECT_TRUE(alert->isShowing());
  EXPECT_EQ(dismissed, 1);
  EXPECT_THAT(this->toolkit.overlays(), SizeIs(1));
  alert->motion.hideDuration = {};
  alert->hideView();  // while it still comes
  EXPECT_EQ(dismissed, 2);
  EXPECT_THAT(this->toolkit.overlays(), IsEmpty());
}

TYPED_TEST(AlertLifeTest, PartsThatTheHostDeletesAreForgotten) {
  const auto alert = this->makeAlert();
  delete alert->addTextField("First");
  alert->addTextField("Second");
  this->toolkit.addCustomView(*alert);
  auto* button = alert->addButton("Gone", [] {});
  alert->showEdit("Fields", "", "OK");
  delete button;
  delete alert->customSubview;
  this->toolkit.resize({400, 500});
  this->settle();
  EXPECT_EQ(this->user.named("First"), nullptr);
  EXPECT_NE(this->user.named("Second"), nullptr);
  EXPECT_EQ(this->user.named("Gone"), nullptr);
  EXPECT_THAT(alert->buttons(), SizeIs(1));
}

TYPED_TEST(AlertLifeTest, NothingMovesWhereTheDesktopWantsNoMotion) {
  for (const auto& settings : {StillDesktop::plasma, StillDesktop::gtk3, StillDesktop::gtk4}) {
    const StillDesktop desktop(settings);
    const auto alert = this->makeAlert();
    alert->motion = {std::chrono::hours(1), std::chrono::hours(1), std::chrono::hours(1)};
    alert->showInfo("Still", "", "OK");
    alert->hideView();
    EXPECT_THAT(this->toolkit.overlays(), IsEmpty()) << settings.file;
  }
}

class MotionlessStyle : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_Widget_Animation_Duration) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }
};

using KifoPopupLifeTest = AlertFixture<WidgetsAlerts>;

TEST_F(KifoPopupLifeTest, AClosureMayDestroyTheHostByAClickOrByEnter) {
  for (const bool byKeyboard : {false, true}) {
    WidgetsAlerts host;
    const auto alert = std::make_shared<KifoPopup>();
    host.setUp(*alert);
    KifoButton* button = alert->addButton("Yes", [&] { host.destroy(); });
    alert->showInfo("Title");
    if (byKeyboard) {
      QTest::keyClick(button, Qt::Key_Return);
    } else {
      QTest::mouseClick(button, Qt::LeftButton);
    }
    settle();
    EXPECT_FALSE(alert->isShowing());
  }
}

TEST_F(KifoPopupLifeTest, NothingMovesWhereTheStyleWantsNoMotion) {
  const QString before = QApplication::style()->name();
  QApplication::setStyle(new MotionlessStyle);
  const auto alert = makeAlert();
  alert->motion = {std::chrono::hours(1), std::chrono::hours(1), std::chrono::hours(1)};
  alert->showInfo("Still", "", "OK");
  alert->hideView();
  EXPECT_THAT(toolkit.overlays(), IsEmpty());
  QApplication::setStyle(before);
}

}  // namespace
}  // namespace kifo::testing
