#include <QDialog>
#include <QTimer>

#include <QProxyStyle>
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"

#include "tests/alert/AlertFixture.h"

/// Who may take an alert away, and when.
namespace kifo {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class KifoPopupLifeTest : public AlertFixture {};

class MotionlessStyle : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_Widget_Animation_Duration) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }
};

TEST_F(KifoPopupLifeTest, NothingMovesWhereTheDesktopWantsNoMotion) {
  const QString before = QApplication::style()->name();
  QApplication::setStyle(new MotionlessStyle);
  const auto alert = makeAlert();
  alert->motion = {std::chrono::hours(1), std::chrono::hours(1), std::chrono::hours(1)};
  alert->showInfo("Still", "", "OK");
  alert->hideView();
  EXPECT_THAT(overlays(), IsEmpty());
  QApplication::setStyle(before);
}

TEST_F(KifoPopupLifeTest, AnAlertThatNobodyHoldsLivesUntilItIsHiddenAndTellsOnce) {
  std::weak_ptr<KifoPopup> life;
  QPointer<QWidget> card;
  const auto responder = [&] {
    const auto alert = makeAlert();
    alert->motion = {};  // It takes its time to come and to go.
    life = alert;
    card = alert->baseView();
    const auto shown = alert->showInfo("Alone", "", "OK");
    waitUntilCome(*alert);
    return shown;
  }();
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
  EXPECT_TRUE(QTest::qWaitFor([&] { return card.isNull(); }, 20000));
  EXPECT_THAT(overlays(), IsEmpty());
  EXPECT_EQ(dismissed, 1);

  responder.setTitle("late");
  responder.setSubTitle("late");
  responder.setDismissBlock([] { FAIL(); });
  responder.close();
  EXPECT_EQ(responder.alertview(), nullptr);
}

TEST_F(KifoPopupLifeTest, AClosureMayCloseItsAlertAndDropTheLastReferenceToIt) {
  auto alert = makeAlert();
  const std::weak_ptr<KifoPopup> life = alert;
  KifoButton* button = alert->addButton("Close", [&] {
    alert->hideView();
    alert.reset();
  });
  alert->showInfo("Close");

  click(button);
  settle();
  EXPECT_TRUE(life.expired());
}

TEST_F(KifoPopupLifeTest, AClosureMayShowAnotherAlert) {
  const auto first = makeAlert();
  const auto second = makeAlert();
  KifoButton* button = first->addButton("Next", [&] { second->showInfo("Second", "", "OK"); });
  first->showInfo("First");

  click(button);
  EXPECT_FALSE(first->isShowing());
  EXPECT_TRUE(second->isShowing());
  EXPECT_EQ(QApplication::focusWidget(), second->buttons().front());
  click(second->buttons().front());
  EXPECT_EQ(QApplication::focusWidget(), field);
}

TEST_F(KifoPopupLifeTest, AClosureMayShowItsOwnAlertAnew) {
  const auto alert = makeAlert();
  KifoButton* button = alert->addButton("Again", [&] {
    alert->hideView();
    alert->showWarning("Second");
  });
  alert->showInfo("First");

  click(button);
  EXPECT_TRUE(alert->isShowing()) << "the press was for the first showing";
  EXPECT_EQ(alert->labelTitle()->text(), "Second");
  EXPECT_THAT(overlays(), SizeIs(1));
}

TEST_F(KifoPopupLifeTest, AClosureMayWaitInADialogWhileTheAlertEnds) {
  auto alert = makeAlert();
  const std::weak_ptr<KifoPopup> life = alert;
  QPointer<KifoButton> button = alert->addButton("Ask", [&] {
    alert->hideView();
    alert.reset();
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&] {
      settle();
      EXPECT_FALSE(button.isNull()) << "its press is not over";
      dialog.accept();
    });
    dialog.exec();
  });
  alert->showInfo("Ask");

  click(button);
  EXPECT_TRUE(QTest::qWaitFor([&] { return button.isNull(); }, 20000));
  EXPECT_TRUE(life.expired());
}

TEST_F(KifoPopupLifeTest, AnAlertThatItsOwnerDestroysLeavesNothingBehind) {
  {
    KifoPopup alert;
    alert.hostWindow = window.get();
    alert.dismissBlock = [] { FAIL(); };
    alert.showInfo("Short", "", "OK");
    EXPECT_THAT(overlays(), SizeIs(1));
  }
  EXPECT_THAT(overlays(), IsEmpty());
  EXPECT_EQ(QApplication::focusWidget(), field);
}

TEST_F(KifoPopupLifeTest, AnAlertCanBeShownAgainWithWhatItHas) {
  const auto alert = makeAlert();
  QLineEdit* name = alert->addTextField("Name");
  alert->showEdit("Who?", "", "OK");
  QTest::keyClicks(QApplication::focusWidget(), "Ada");
  alert->hideView();
  alert->showEdit("Really?", "", "OK");
  EXPECT_TRUE(name->isVisible());
  EXPECT_EQ(name->text(), "Ada");
  EXPECT_THAT(alert->buttons(), SizeIs(1)) << "the first showing's close button has gone";
  window.reset();
  EXPECT_FALSE(alert->isShowing());
  EXPECT_EQ(name->text(), "Ada") << "the window took the alert's card with it";
}

TEST_F(KifoPopupLifeTest, AShowCallOnAnAlertThatIsOnItsWayOutBringsItBack) {
  const auto alert = makeAlert();
  alert->motion = {};
  int dismissed = 0;
  alert->dismissBlock = [&] { ++dismissed; };
  alert->showInfo("First");
  waitUntilCome(*alert);
  alert->motion.hideDuration = std::chrono::hours(1);
  alert->hideView();
  EXPECT_EQ(dismissed, 0);
  alert->showInfo("Second");
  EXPECT_TRUE(alert->isShowing());
  EXPECT_EQ(dismissed, 1);
  EXPECT_THAT(overlays(), SizeIs(1));
  alert->motion.hideDuration = {};
  alert->hideView();  // while it still comes
  EXPECT_EQ(dismissed, 2);
  EXPECT_THAT(overlays(), IsEmpty());
}

TEST_F(KifoPopupLifeTest, PartsThatTheHostDeletesAreForgotten) {
  const auto alert = makeAlert();
  delete alert->addTextField("First");
  QLineEdit* second = alert->addTextField("Second");
  auto* custom = new QLabel("Custom");
  alert->customSubview = custom;
  KifoButton* button = alert->addButton("Gone", [] {});
  alert->showEdit("Fields", "", "OK");
  delete button;
  delete custom;
  window->resize(400, 500);
  EXPECT_THAT(alert->inputs(), ElementsAre(second));
  EXPECT_THAT(alert->buttons(), SizeIs(1));
}

}  // namespace
}  // namespace kifo
