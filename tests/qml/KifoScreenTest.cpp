#include "platform/qml/KifoScreen.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include "tests/support/PageEvents.h"

namespace kifo {
namespace {

constexpr auto kCampaign = R"({"model": [{
    "type": "POPUP", "uuid": "u", "maxShowCount": 1, "triggeringEventName": "look",
    "buttons": [{"id": "b", "text": "Show me", "action": {"link": "shop://lamp"}}]}]})";

/// A window in QML whose screens report themselves.
class KifoScreenTest : public testing::FakesTest {
 protected:
  QQuickWindow& load(const QByteArray& content) {
    engine_.loadData("import QtQuick\nimport Kifo\nWindow { visible: true; " + content + " }");
    return *qobject_cast<QQuickWindow*>(engine_.rootObjects().value(0));
  }
  QObject* object(const char* name) {
    return engine_.rootObjects().value(0)->findChild<QObject*>(name);
  }
  void run(const char* function) {
    EXPECT_TRUE(QMetaObject::invokeMethod(engine_.rootObjects().value(0), function));
  }
  std::vector<std::string> events() { return testing::takeEvents(*fake_.inspector); }

  QQmlApplicationEngine engine_;
};

TEST_F(KifoScreenTest, LoadingTheModuleMakesNothingForPopupsThatMayCome) {
  load(R"(Item { KifoScreen { name: "MenuScreen" } } KifoAlert { title: "Later" })");
  ASSERT_FALSE(engine_.rootObjects().isEmpty());
  EXPECT_THAT(QCoreApplication::instance()->findChildren<QQmlEngine*>(), IsEmpty());
}

TEST_F(KifoScreenTest, ShowingAndHidingTheItemSendThePageUnderItsName) {
  load(R"(Item { objectName: "menu"; KifoScreen { name: "MenuScreen" } }
          Item { objectName: "basket"; visible: false; KifoScreen { name: "BasketScreen" } })");
  EXPECT_THAT(events(), ElementsAre("page_in MenuScreen"));
  object("menu")->setProperty("visible", false);
  object("basket")->setProperty("visible", true);
  EXPECT_THAT(events(), ElementsAre("page_out MenuScreen", "page_in BasketScreen"));
}

TEST_F(KifoScreenTest, AWindowThatIsHiddenHidesItsScreensAndOneThatIsMinimisedDoesNot) {
  QQuickWindow& window = load(R"(Item { KifoScreen { name: "MenuScreen" } })");
  events();
  window.showMinimized();
  EXPECT_THAT(events(), IsEmpty());
  window.hide();
  EXPECT_THAT(events(), ElementsAre("page_out MenuScreen"));
  window.show();
  EXPECT_THAT(events(), ElementsAre("page_in MenuScreen"));
}

TEST_F(KifoScreenTest, AScreenThatIsNotActiveIsHiddenAlthoughItIsVisible) {
  load(R"(Item { KifoScreen { objectName: "screen"; name: "MenuScreen"; active: false } })");
  EXPECT_THAT(events(), IsEmpty());
  object("screen")->setProperty("active", true);
  EXPECT_THAT(events(), ElementsAre("page_in MenuScreen"));
  object("screen")->setProperty("active", false);
  EXPECT_THAT(events(), ElementsAre("page_out MenuScreen"));
  object("screen")->setProperty("active", true);
  events();
  delete object("screen");
  EXPECT_THAT(events(), ElementsAre("page_out MenuScreen")) << "its item stays";
}

TEST_F(KifoScreenTest, AScreenWithoutANameIsCalledAfterItsType) {
  load(R"(component MenuPage: Item { KifoScreen {} }
          MenuPage { property int more: 1 })");
  EXPECT_THAT(events(), ElementsAre("page_in MenuPage"));
}

TEST_F(KifoScreenTest, AnItemThatIsDestroyedWhileShownIsLeft) {
  load(R"(Loader { objectName: "loader"; sourceComponent: Item { KifoScreen { name: "Menu" } } })");
  ASSERT_THAT(events(), ElementsAre("page_in Menu"));
  object("loader")->setProperty("active", false);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_THAT(events(), ElementsAre("page_out Menu"));
  EXPECT_EQ(KifoScreen::current(), nullptr);
}

TEST_F(KifoScreenTest, AnEventBelongsToItsScreenOrToTheOneThatWasShownLast) {
  load(R"(Item { KifoScreen { id: first; name: "First" } }
          Item { objectName: "second"; visible: false; KifoScreen { name: "Second" } }
          function send() { first.sendEvent("of_first"); Kifo.sendEvent("of_last", { items: 3 }) }
          function enter() { Kifo.login({ method: "badge" }) })");
  object("second")->setProperty("visible", true);
  events();
  run("send");
  EXPECT_THAT(events(), ElementsAre("of_first First", "of_last Second"));
  object("second")->setProperty("visible", false);
  events();
  run("send");
  run("enter");
  EXPECT_THAT(events(), ElementsAre("of_first First", "of_last First", "login First"));
}

TEST_F(KifoScreenTest, AStartReportsWhatIsShownAndAPopupsButtonReachesTheHostWithItsLink) {
  fake_.reachability->setFlags(2);
  fake_.http->setHandler([](const HttpRequest& request) {
    return HttpAnswer{{}, 200, request.url.starts_with("http://api") ? kCampaign : ""};
  });
  load(R"(Item { KifoScreen { name: "Menu" } }
          property string link
          Connections { target: Kifo; function onButtonChosen(button) { link = button.link } }
          function start() {
            Kifo.initialize({ bundle: "com.example.kiosk", apiUri: "http://api/inapp",
                              listenerUri: "http://events/", authorization: "token" })
          }
          function send() { Kifo.sendEvent("look") })");
  events();
  run("start");
  fake_.runUntilIdle();
  QCoreApplication::processEvents();
  EXPECT_THAT(events(), Contains("page_in Menu"));
  run("send");
  fake_.runUntilIdle();
  fake_.advance(1.0);
  const auto shown = fake_.popups->take();  // by the presenter that the host has chosen
  ASSERT_EQ(shown.size(), 1u);
  shown[0]->actionItem(shown[0]->preferences.buttons.at(0));
  EXPECT_EQ(engine_.rootObjects().value(0)->property("link"), "shop://lamp");
}

}  // namespace
}  // namespace kifo
