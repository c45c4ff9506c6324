// The alert as an element of a QML host.

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlertOverlay.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

constexpr auto kHost = R"(
import QtQuick
import Kifo
Window {
  visible: true; width: 500; height: 600
  property int presses: 0
  property int timeouts: 0
  property int dismissals: 0
  KifoAlert {
    objectName: "alert"; style: KifoAlert.Question; title: "Pay now?"; text: "12.90"
    buttons: ["Pay", "Split"]; closeButtonTitle: "Not yet"; reducedMotion: true
    fields: ["Name"]; rows: [{ header: "Coffee", value: "2.40" }]
    appearance: ({ kWindowWidth: 320, kButtonHeight: "high", noSuch: 1 })
    onPressed: index => presses += index + 1
    onTimedOut: timeouts += 1
    onDismissed: dismissals += 1
  }
})";

TEST(QmlAlertTest, AQmlHostWritesTheAlertAsAnElement) {
  const InstalledFakePlatform fake;
  QQmlApplicationEngine engine;
  engine.loadData(kHost);
  auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  auto* alert = window->findChild<QObject*>("alert");
  QMetaObject::invokeMethod(alert, "show");
  EXPECT_THAT(fake.console->take(),
              ElementsAre("Kifo KifoAlert: \"kButtonHeight\" has a wrong type",
                          "Kifo KifoAlert: the appearance has no \"noSuch\""));
  EXPECT_EQ(alert->property("showing"), true);
  auto* overlay = window->contentItem()->findChild<QuickAlertOverlay*>();
  EXPECT_EQ(overlay->card()->width(), 320);
  const auto buttons = overlay->buttons();
  ASSERT_EQ(buttons.size(), 3);
  for (const char letter : {'A', 'd', 'a'}) QTest::keyClick(window, letter);
  EXPECT_EQ(alert->property("texts").toStringList(), QStringList("Ada"));
  QMetaObject::invokeMethod(buttons[1].value<QObject*>(), "press");
  EXPECT_EQ(window->property("presses"), 2);
  EXPECT_EQ(window->property("dismissals"), 1);
  EXPECT_EQ(alert->property("showing"), false);

  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  alert->setProperty("timeout", 0.02);
  QMetaObject::invokeMethod(alert, "show");
  EXPECT_EQ(window->contentItem()->findChild<QuickAlertOverlay*>()->buttons().size(), 3);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window->property("dismissals") == 2; }, 20000));
  EXPECT_EQ(window->property("timeouts"), 1);
}

}  // namespace
}  // namespace kifo::testing
