// Popups in scenes as hosts have them: which window, when, above what, and nothing through them.
#include <QMainWindow>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QWheelEvent>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/qt/QtPlatform.h"
#include "platform/qt/QtScreen.h"
#include "platform/qt/QuickPopupPresenter.h"
#include "platform/qt/QuickScreenProvider.h"
#include "testing/ui/User.h"
#include "tests/support/QtScreens.h"
#include "tests/support/StillDesktop.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

/// A host's screen that is an item.
class ItemScreen : public HomeScreen, public QuickScreenProvider {
 public:
  explicit ItemScreen(QQuickItem* item) : item_(item) {}
  [[nodiscard]] QQuickItem* item() const override { return item_; }

 private:
  QPointer<QQuickItem> item_;
};

constexpr auto kHost = R"(
import QtQuick
import QtQuick.Controls
ApplicationWindow {
  id: root
  width: 414; height: 700
  property int presses: 0
  property int drags: 0
  property int closings: 0
  property bool hovered: hover.hovered
  property alias popup: popup
  property alias drawer: drawer
  Item {
    objectName: "page"
    anchors.fill: parent
    TapHandler { onTapped: root.presses++ }
    DragHandler { target: null; onActiveChanged: root.drags++ }
    HoverHandler { id: hover }
    WheelHandler { onWheel: root.presses++ }
    MultiPointTouchArea { anchors.fill: parent; mouseEnabled: false; onPressed: root.presses++ }
    Keys.onPressed: root.presses++
  }
  Shortcut { sequence: "Escape"; onActivated: root.presses++ }
  Shortcut { sequence: "Return"; onActivated: root.presses++ }
  TextField { focus: true }
  Popup {
    id: popup
    modal: true
    focus: true
    width: 200; height: 200
    onClosed: root.closings++
    Button { text: "Host's" }
  }
  Drawer {
    id: drawer
    focus: true
    width: 200; height: 700
    onClosed: root.closings++
  }
}
)";

class QuickPopupPresenterTest : public SettledTest {
 protected:
  QuickPopupPresenterTest() { options.reducedMotion = true; }
  ~QuickPopupPresenterTest() override {
    window = nullptr;
    engine.reset();
    presenter.reset();
    settle();
  }

  void load() {
    engine = std::make_unique<QQmlApplicationEngine>();
    engine->loadData(kHost);
    ASSERT_FALSE(engine->rootObjects().isEmpty());
    window = qobject_cast<QQuickWindow*>(engine->rootObjects().first());
    screen = std::make_shared<ItemScreen>(window->contentItem());
  }
  void show() {
    window->show();
    window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  }

  std::shared_ptr<PopupRequest> request(const std::string& title) {
    auto made = std::make_shared<PopupRequest>();
    made->preferences.type = "POPUP";
    made->preferences.title = title;
    made->preferences.controller = screen;
    made->preferences.buttons = {option("b", "Close " + title)};
    made->preferences.appCommunicationItem = std::make_shared<AppCommunicationItem>();
    made->open = [this, title] {
      opened.push_back(title);
      return true;
    };
    return made;
  }

  void present(const std::shared_ptr<const PopupRequest>& popup) {
    presenter->present(popup);
    settle();
  }

  std::vector<QuickPopup*> popups() {
    const auto found = window->contentItem()->findChildren<QuickPopup*>();
    return {found.begin(), found.end()};
  }
  User user() {
    return User(*window, [this] { return window->grabWindow(); });
  }

  PopUpOptions options;
  std::unique_ptr<QQmlApplicationEngine> engine;
  QPointer<QQuickWindow> window;
  std::shared_ptr<ViewController> screen;
  const StillDesktop desktop;  // on which nothing moves, whatever the host's durations are
  std::shared_ptr<QuickPopupPresenter> presenter = std::make_shared<QuickPopupPresenter>([] {
    PopUpOptions slow;
    slow.durations.fade = std::chrono::hours(1);
    return slow;
  }());
  std::vector<std::string> opened;
};

TEST_F(QuickPopupPresenterTest, APopupForASceneThatIsNotSeenWaitsAndSpendsNothing) {
  load();
  present(request("one"));
  EXPECT_TRUE(opened.empty());
  show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return settle(), opened.size() == 1; }));
  user().click("Close one");
  settle();
  window->hide();
  present(request("two"));
  EXPECT_THAT(opened, ElementsAre("one"));
  show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return settle(), opened.size() == 2; }));
  user().click("Close two");
  window->showMinimized();
  present(request("three"));
  EXPECT_EQ(opened.size(), 2u);
  window->showNormal();
  EXPECT_TRUE(QTest::qWaitFor([&] { return settle(), opened.size() == 3; }));
}

TEST_F(QuickPopupPresenterTest, WithoutAScreenOfASceneTheActiveOneIsTaken) {
  load();
  show();
  screen = std::make_shared<HomeScreen>();
  present(request("one"));
  EXPECT_EQ(popups().size(), 1u);
  user().click("Close one");
  QQuickWindow second;
  second.show();
  QWidget active;
  active.show();
  active.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&active));
  present(request("two"));
  EXPECT_THAT(opened, ElementsAre("one")) << "either scene might be meant";
}

TEST_F(QuickPopupPresenterTest, AWindowThatGoesTakesItsPopupAlongAndWhatWaitsIsNotShown) {
  load();
  show();
  const auto reporter = std::make_shared<RecordingReporter>();
  const auto one = request("one");
  one->reporter = reporter;
  present(one);
  EXPECT_EQ(popups().at(0)->width(), window->width());
  present(request("two"));
  screen.reset();
  engine.reset();
  settle();
  EXPECT_TRUE(reporter->answers.empty());
  EXPECT_THAT(opened, ElementsAre("one"));
  EXPECT_THAT(fake.console->lines(),
              Contains("Kifo QuickPopupPresenter: the popup is not shown: its screen is gone"));
}

TEST_F(QuickPopupPresenterTest, NothingReachesTheHostThroughAPopup) {
  load();
  show();
  present(request("one"));
  const QPoint beside(10, 300);
  QTest::mouseMove(window, QPoint(20, 300));
  QTest::mouseClick(window, Qt::LeftButton, {}, beside);
  QTest::mousePress(window, Qt::LeftButton, {}, beside);
  for (int x = 20; x < 200; x += 30) QTest::mouseMove(window, QPoint(x, 320));
  QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(200, 320));
  static QPointingDevice* finger = QTest::createTouchDevice();
  QTest::touchEvent(window, finger).press(0, beside).press(1, QPoint(60, 320));
  QTest::touchEvent(window, finger).move(0, beside + QPoint(50, 90)).stationary(1);
  QTest::touchEvent(window, finger).release(0, beside + QPoint(50, 90)).release(1, QPoint(60, 320));
  QWheelEvent wheel(beside, window->mapToGlobal(beside), {}, {0, -120}, Qt::NoButton, {},
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(window, &wheel);
  for (const auto key : {Qt::Key_Return, Qt::Key_A, Qt::Key_Tab}) QTest::keyClick(window, key);
  EXPECT_EQ(window->property("presses").toInt(), 0);
  EXPECT_EQ(window->property("drags").toInt(), 0);
  EXPECT_FALSE(window->property("hovered").toBool());
  QTest::keyClick(window, Qt::Key_Escape);
  settle();
  EXPECT_EQ(window->property("presses").toInt(), 0);
  EXPECT_TRUE(popups().empty());
  QTest::mouseClick(window, Qt::LeftButton, {}, beside);
  EXPECT_EQ(window->property("presses").toInt(), 1) << "and everything does once it is gone";
}

TEST_F(QuickPopupPresenterTest, AFingerPressesScrollsAndTouchesTheBody) {
  load();
  show();
  window->resize(414, 300);
  ASSERT_TRUE(QTest::qWaitFor([&] { return window->contentItem()->height() == 300; }));
  const auto popup = request("one");
  popup->preferences.detailText = std::string(2000, 'x');
  auto action = std::make_shared<AppCommunicationItemAction>();
  action->link = "app://offers";
  popup->preferences.appCommunicationItem->action = action;
  int touches = 0;
  popup->actionBodyItem = [&](auto) { ++touches; };
  present(popup);
  auto driver = user();
  static QPointingDevice* finger = QTest::createTouchDevice();
  const QPoint from(200, 200);
  const int before = driver.object("popupTitle")->rect().y();
  QTest::touchEvent(window, finger).press(0, from).press(1, from);
  for (int y = 20; y <= 100; y += 20)  // the second finger moves the other way
    QTest::touchEvent(window, finger).move(0, from - QPoint(0, y)).move(1, from + QPoint(0, y));
  QTest::touchEvent(window, finger).release(0, from - QPoint(0, 100)).release(1, from);
  EXPECT_LT(driver.object("popupTitle")->rect().y(), before - 40);
  EXPECT_EQ(touches, 0) << "a drag touches nothing";
  QTest::touchEvent(window, finger).press(0, from);
  QTest::touchEvent(window, finger).release(0, from);
  settle();
  EXPECT_EQ(touches, 1);
}

TEST_F(QuickPopupPresenterTest, AnOpenPopupOrDrawerOfTheHostLiesBelowStaysOpenAndHasTheFocusAgain) {
  load();
  show();
  int closings = 0;
  for (const char* name : {"popup", "drawer"}) {
    auto* hosts = window->property(name).value<QObject*>();
    QMetaObject::invokeMethod(hosts, "open");
    ASSERT_TRUE(QTest::qWaitFor([&] { return hosts->property("opened").toBool(); }));
    present(request(name));
    QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(400, 650));
    user().click("Close " + QString(name));
    settle();
    EXPECT_TRUE(popups().empty());
    EXPECT_EQ(window->property("closings").toInt(), closings) << name;
    QTest::keyClick(window, Qt::Key_Escape);
    ++closings;
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->property("closings") == closings; })) << name;
  }
}

TEST_F(QuickPopupPresenterTest, AKeyboardThatTheHostDrawsCanBeUsedUnderAPopup) {
  load();
  show();
  const QPoint key(200, 600);
  const QColor plain = user().picture().pixelColor(key);
  present(request("one"));
  popups().front()->keyboardWillShow({0, 500, 414, 200});
  EXPECT_EQ(user().picture().pixelColor(key), plain) << "it is not dimmed";
  QTest::mouseClick(window, Qt::LeftButton, {}, key);
  EXPECT_EQ(window->property("presses").toInt(), 1);
  popups().front()->keyboardWillHide();
  EXPECT_NE(user().picture().pixelColor(key), plain);
  QTest::mouseClick(window, Qt::LeftButton, {}, key);
  EXPECT_EQ(window->property("presses").toInt(), 1);
}

TEST_F(QuickPopupPresenterTest, ANewFontOrDirectionIsFollowedWhileAPopupIsUp) {
  load();
  show();
  const auto popup = request("one");
  popup->preferences.type = popup->preferences.appCommunicationItem->type = "SURVEY";
  popup->preferences.choices = {option("a", "First"), option("b", "Second")};
  present(popup);
  auto driver = user();
  driver.click("Second");
  const QRect close = driver.object("closeButton")->rect();
  const QRect title = driver.object("popupTitle")->rect();
  QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  settle();
  EXPECT_LT(driver.object("closeButton")->rect().x(), close.x());
  EXPECT_TRUE(driver.named("Second")->state().checked) << "what was chosen stays";
  QGuiApplication::setLayoutDirection(Qt::LeftToRight);
  settle();
  const QImage picture = driver.picture();
  const QFont before = QGuiApplication::font();
  QFont other = before;
  other.setFamily("DejaVu Serif");
  QGuiApplication::setFont(other);
  settle();
  EXPECT_NE(driver.picture(), picture);
  EXPECT_TRUE(driver.named("Second")->state().checked);
  QGuiApplication::setFont(before);
  settle();
  EXPECT_EQ(driver.object("closeButton")->rect(), close);
  EXPECT_EQ(driver.object("popupTitle")->rect(), title);
}

TEST_F(QuickPopupPresenterTest, WidgetsAndScenesHaveOnePresenter) {
  load();
  show();
  Platform both = withQuick(withQt(nullPlatform(), options), options);
  class WidgetScreen : public QtScreen<QWidget> {};
  WidgetScreen widget;
  widget.resize(400, 400);
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  const auto one = request("one");
  one->preferences.controller = widget.viewController();
  both.popups->present(one);
  both.popups->present(request("two"));
  settle();
  settle();
  EXPECT_THAT(opened, UnorderedElementsAre("one", "two"));
  EXPECT_NE(widget.findChild<QWidget*>("PopUpWindow"), nullptr);
  EXPECT_EQ(popups().size(), 1u);
}

TEST_F(QuickPopupPresenterTest, AWindowWithWidgetsAndASceneShowsOnePopupAtATime) {
  QMainWindow host;
  auto* scene = new QQuickWidget(&host);
  scene->setResizeMode(QQuickWidget::SizeRootObjectToView);
  QQmlComponent component(scene->engine());
  component.setData("import QtQuick\nRectangle {}", {});
  auto* root = qobject_cast<QQuickItem*>(component.create());
  scene->setContent({}, nullptr, root);
  host.setCentralWidget(scene);
  host.resize(414, 700);
  host.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&host));
  window = scene->quickWindow();
  screen = std::make_shared<ItemScreen>(root);
  const Platform both = withQuick(withQt(nullPlatform(), options), options);
  const auto inScene = request("in the scene");
  const auto ofWidgets = request("of widgets");
  const auto hostScreen = std::make_shared<WidgetScreen>(&host);
  ofWidgets->preferences.controller = hostScreen;
  both.popups->present(inScene);
  settle();
  both.popups->present(ofWidgets);
  settle();
  EXPECT_THAT(opened, ElementsAre("in the scene"));
  ASSERT_EQ(popups().size(), 1u);
  EXPECT_EQ(popups().front()->height(), 700);
  QTest::keyClick(scene, Qt::Key_Escape);
  settle();
  settle();
  EXPECT_THAT(opened, ElementsAre("in the scene", "of widgets"));
  EXPECT_TRUE(popups().empty());
  EXPECT_NE(host.findChild<QWidget*>("PopUpWindow"), nullptr);
}

}  // namespace
}  // namespace kifo::testing
