#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlert.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QQmlApplicationEngine>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlertOverlay.h"
#include "testing/FakePlatform.h"

namespace kifo {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// A scene of the host's with a field that has the focus, and alerts over it that do not move.
class QuickAlertTest : public ::testing::Test {
 protected:
  QuickAlertTest() {
    engine_->loadData(R"(
      import QtQuick
      import Kifo
      Window {
        visible: true; width: 500; height: 600
        property int presses: 0
        property int timeouts: 0
        property int dismissals: 0
        TextInput { objectName: "field"; width: 100; height: 30; focus: true }
        Shortcut { sequence: "Ctrl+D"; onActivated: presses += 100 }
        KifoAlert {
          objectName: "alert"; style: KifoAlert.Question; title: "Pay now?"; text: "12.90"
          buttons: ["Pay", "Split"]; closeButtonTitle: "Not yet"; reducedMotion: true
          fields: ["Name"]; rows: [{ header: "Coffee", value: "2.40" }]
          appearance: ({ kWindowWidth: 320, kButtonHeight: "high", noSuch: 1 })
          onPressed: index => presses += index + 1
          onTimedOut: timeouts += 1
          onDismissed: dismissals += 1
        }
      })");
    window_ = qobject_cast<QQuickWindow*>(engine_->rootObjects().value(0));
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_));
    EXPECT_TRUE(item("field")->hasActiveFocus());
  }

  QQuickItem* item(const char* name) const { return window_->findChild<QQuickItem*>(name); }
  QObject* object(const char* name) const { return window_->findChild<QObject*>(name); }

  std::shared_ptr<QuickAlert> makeAlert(KifoAppearance appearance = {}) const {
    auto alert = std::make_shared<QuickAlert>(std::move(appearance));
    alert->hostWindow = window_;
    alert->motion.reduced = true;
    return alert;
  }
  std::vector<QuickAlertOverlay*> overlays() const {
    std::vector<QuickAlertOverlay*> shown;
    for (auto* overlay : window_->contentItem()->findChildren<QuickAlertOverlay*>()) {
      if (overlay->isVisible()) shown.push_back(overlay);
    }
    return shown;
  }
  /// The items of that name in the uppermost alert, in their order.
  QList<QQuickItem*> parts(const char* name) const {
    QList<QQuickItem*> found;
    collect(overlays().back(), name, found);
    return found;
  }
  static void collect(const QQuickItem* item, const char* name, QList<QQuickItem*>& found) {
    for (QQuickItem* child : item->childItems()) {
      if (child->objectName() == name && child->isVisible()) found.append(child);
      collect(child, name, found);
    }
  }
  static QRect boxOf(const QQuickItem* item) {
    const QRectF box = item->mapRectToScene(item->boundingRect());
    return box.toRect();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
    QTest::keyClick(window_, key, modifiers);
  }
  void type(const char* text) const {
    for (; *text != 0; ++text) QTest::keyClick(window_, *text);
  }
  void click(const QQuickItem* item) const {
    QTest::mouseClick(window_, Qt::LeftButton, {}, boxOf(item).center());
  }
  void tap(QPoint place) const {
    static QPointingDevice* const finger = QTest::createTouchDevice();
    QTest::touchEvent(window_, finger).press(0, place, window_);
    QTest::touchEvent(window_, finger).release(0, place, window_);
  }
  static void settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }

  testing::InstalledFakePlatform fake_;
  std::unique_ptr<QQmlApplicationEngine> engine_ = std::make_unique<QQmlApplicationEngine>();
  QPointer<QQuickWindow> window_;
};

TEST_F(QuickAlertTest, APressRunsTheClosureOnceHidesAndGivesTheFocusBack) {
  const auto alert = makeAlert();
  int pays = 0;
  alert->addButton("Pay", [&] { ++pays; });
  alert->showSuccess("Pay?", "12.90", "Not yet");
  ASSERT_TRUE(alert->isShowing());
  ASSERT_THAT(parts("alertButton"), SizeIs(2));
  EXPECT_TRUE(parts("alertButton")[0]->hasActiveFocus());
  click(parts("alertButton")[0]);
  EXPECT_EQ(pays, 1);
  EXPECT_FALSE(alert->isShowing());
  EXPECT_THAT(overlays(), IsEmpty());
  EXPECT_TRUE(item("field")->hasActiveFocus());
}

TEST_F(QuickAlertTest, AFingerPressesAButtonAndATapBesideHidesOnlyWhereThatIsWanted) {
  for (const bool wanted : {false, true}) {
    KifoAppearance appearance;
    appearance.hideWhenBackgroundViewIsTapped = wanted;
    const auto alert = makeAlert(appearance);
    alert->showInfo("Tap", "", "OK");
    tap(boxOf(alert->baseView()).center() - QPoint(0, 40));
    EXPECT_TRUE(alert->isShowing()) << "a tap on the card hid it";
    tap({3, 3});
    EXPECT_EQ(alert->isShowing(), !wanted);
    if (!wanted) tap(boxOf(parts("alertButton")[0]).center());
    EXPECT_FALSE(alert->isShowing());
  }
}

TEST_F(QuickAlertTest, EscapeClosesWhereTheUserIsOfferedAWayOut) {
  const std::tuple<KifoPopupStyle, bool, const char*, bool> cases[] = {
      {KifoPopupStyle::question, true, "Close", true},
      {KifoPopupStyle::question, true, "", false},
      {KifoPopupStyle::question, false, "", true},
      {KifoPopupStyle::wait, false, "", false},
      {KifoPopupStyle::wait, false, "Stop", true}};
  for (const auto& [style, hasButton, closeTitle, closes] : cases) {
    const auto alert = makeAlert();
    if (hasButton) alert->addButton("Yes", [] { FAIL() << "Escape is no press"; });
    alert->showTitle("Escape", "", style, closeTitle);
    press(Qt::Key_Escape);
    EXPECT_EQ(alert->isShowing(), !closes);
    alert->hideView();
  }
}

TEST_F(QuickAlertTest, TabGoesRoundInTheOrderThatIsSeenAndKeysAndShortcutsStayInside) {
  const auto alert = makeAlert();
  int yes = 0;
  alert->addButton("Yes", [&] { ++yes; });
  alert->addTextView();
  alert->addTextField("Name");
  alert->closeIcon = QIcon(QPixmap(16, 16));
  alert->showEdit("Order", "", "No");
  const auto fields = parts("alertField");
  const auto buttons = parts("alertButton");
  std::vector<QQuickItem*> forth;
  for (int i = 0; i < 6; ++i) {
    forth.push_back(window_->activeFocusItem());
    press(Qt::Key_Tab);
  }
  EXPECT_EQ(forth[0], forth[5]) << "round";
  EXPECT_THAT(forth[2], buttons[0]);
  EXPECT_THAT(forth[3], buttons[1]);
  press(Qt::Key_Backtab);
  type("Ada");
  press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(window_->property("presses"), 0) << "the host's shortcut";
  EXPECT_EQ(alert->fields()[0]->text(), "Ada");
  EXPECT_EQ(item("field")->property("text"), "");
  press(Qt::Key_Return);
  EXPECT_EQ(yes, 0) << "Return in a text of several lines breaks the line";
  press(Qt::Key_Tab);
  press(Qt::Key_Return);
  EXPECT_EQ(yes, 1);
  EXPECT_EQ(alert->fields()[0]->text(), "Ada\n") << "the text outlives the alert's view";
}

TEST_F(QuickAlertTest, EachPartLiesWhereTheLayoutSays) {
  KifoAppearance appearance;
  appearance.buttonsLayout = KifoAlertButtonLayout::horizontal;
  const auto alert = makeAlert(appearance);
  alert->addButton("Send it to me", [] {});
  alert->addTextField("Name");
  alert->headerStr = "Order 1042";
  alert->datas = {{"Coffee", "2.40"}, {"Address", "12 Harbour Street, third floor, ring twice"}};
  alert->showInfo("Layout", "A text of two lines, which is longer than the card is wide.", "OK");
  const AlertPlaces& places = overlays().front()->cardPlaces();
  EXPECT_EQ(boxOf(alert->baseView()).size(), places.card);
  EXPECT_NEAR(boxOf(alert->baseView()).center().x(), 250, 1);
  EXPECT_NEAR(boxOf(alert->baseView()).center().y(), 300, 1);
  const QPoint contents = boxOf(alert->baseView()).topLeft() + places.viewport.topLeft();
  const auto buttons = parts("alertButton");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(boxOf(buttons[i]), places.buttons[static_cast<std::size_t>(i)].translated(contents));
  }
  window_->resize(300, 240);
  settle();
  const QRect window(QPoint(), window_->size());
  EXPECT_TRUE(window.contains(boxOf(alert->baseView())));
  EXPECT_TRUE(overlays().front()->cardPlaces().scrolls);
  while (!parts("alertButton")[1]->hasActiveFocus()) press(Qt::Key_Tab);
  EXPECT_TRUE(boxOf(alert->baseView()).contains(boxOf(parts("alertButton")[1]).center()))
      << "what has the focus is scrolled to";
}

TEST_F(QuickAlertTest, AssistiveTechnologyReadsWhatIsShown) {
  const auto alert = makeAlert();
  alert->addTextField("Name");
  alert->addButton("Stay", {}, {}, ShowTimeoutConfiguration{"(", " s)"}, [] {});
  alert->showError("Printer", "There is no paper", "OK", KifoTimeoutConfiguration{60, {}});
  const auto textOf = [](QObject* object, QAccessible::Text kind) {
    return QAccessible::queryAccessibleInterface(object)->text(kind);
  };
  QuickAlertOverlay* overlay = overlays().front();
  EXPECT_EQ(QAccessible::queryAccessibleInterface(overlay)->role(), QAccessible::AlertMessage);
  EXPECT_EQ(textOf(overlay, QAccessible::Name), "Printer");
  EXPECT_EQ(textOf(overlay, QAccessible::Description), "There is no paper");
  alert->setSubTitle("There is paper");
  EXPECT_EQ(textOf(overlay, QAccessible::Description), "There is paper");
  EXPECT_EQ(textOf(parts("alertButton")[0], QAccessible::Name), "Stay");
  EXPECT_EQ(textOf(parts("alertButton")[0], QAccessible::Description), "(60 s)");
  EXPECT_EQ(alert->buttons()[0]->title(), "Stay (60 s)");
  EXPECT_EQ(textOf(parts("alertField")[0], QAccessible::Name), "Name");
}

TEST_F(QuickAlertTest, AWindowThatIsDestroyedEndsItsAlertWithoutRunningAnything) {
  const auto alert = makeAlert();
  alert->addButton("Yes", [] { FAIL(); });
  alert->dismissBlock = [] { FAIL(); };
  const std::weak_ptr<QuickAlert> life = alert;
  alert->showInfo("Short", "", "OK");
  engine_.reset();
  EXPECT_FALSE(alert->isShowing());
  alert->hideView();
  alert->setTitle("late");
}

TEST_F(QuickAlertTest, WithoutAWindowTheAlertIsNotShownAndSaysSo) {
  window_->hide();
  const auto alert = std::make_shared<QuickAlert>();
  fake_.console->take();
  alert->showInfo("Alone", "", "OK");
  EXPECT_FALSE(alert->isShowing());
  EXPECT_THAT(fake_.console->take(), ElementsAre(HasSubstr("there is no window for it")));
}

TEST_F(QuickAlertTest, AQmlHostWritesTheAlertAsAnElement) {
  QObject* alert = object("alert");
  fake_.console->take();
  QMetaObject::invokeMethod(alert, "show");
  EXPECT_THAT(fake_.console->take(),
              ElementsAre("Kifo KifoAlert: \"kButtonHeight\" has a wrong type",
                          "Kifo KifoAlert: the appearance has no \"noSuch\""));
  EXPECT_EQ(alert->property("showing"), true);
  EXPECT_EQ(overlays().front()->card()->width(), 320);
  ASSERT_THAT(parts("alertButton"), SizeIs(3));
  type("Ada");
  EXPECT_EQ(alert->property("texts").toStringList(), QStringList("Ada"));
  click(parts("alertButton")[1]);
  EXPECT_EQ(window_->property("presses"), 2);
  EXPECT_EQ(window_->property("dismissals"), 1);
  EXPECT_EQ(alert->property("showing"), false);

  alert->setProperty("timeout", 0.02);
  QMetaObject::invokeMethod(alert, "show");
  EXPECT_TRUE(QTest::qWaitFor([&] { return window_->property("dismissals") == 2; }, 20000));
  EXPECT_EQ(window_->property("timeouts"), 1);
}

}  // namespace
}  // namespace kifo
