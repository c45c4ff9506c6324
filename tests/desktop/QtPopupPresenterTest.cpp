#include "platform/qt/QtPopupPresenter.h"

#include <QDialog>
#include <QPointer>
#include <QRasterWindow>
#include <QSignalSpy>
#include <QTest>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "platform/qt/QtPopupSwitch.h"
#include "platform/qt/popups/PopupRouter.h"
#include "tests/support/QtScreens.h"
#include "tests/support/StillDesktop.h"
#include "tests/views/PopupFixture.h"

namespace kifo {
namespace {

using testing::WidgetScreen;
using testing::WindowScreen;

std::shared_ptr<PopupRequest> requestFor(const std::shared_ptr<ViewController>& screen,
                                         const std::string& uuid) {
  const auto request = std::make_shared<PopupRequest>();
  request->preferences.type = "OPEN_ENDED";
  request->preferences.title = uuid;
  request->preferences.appCommunicationItem = std::make_shared<AppCommunicationItem>();
  request->preferences.appCommunicationItem->uuid = uuid;
  request->preferences.controller = screen;
  return request;
}

bool waitFor(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, 20000);
}

std::string uuidOf(const PopUpWindow* popup) {
  return *popup->state().appCommunicationItem->uuid;
}

class QtPopupPresenterTest : public testing::SettledTest {
 protected:
  QtPopupPresenterTest() {
    options_.durations.fade = std::chrono::hours(1);
    presenter_ = std::make_unique<QtPopupPresenter>(options_);
    window_.resize(800, 600);
    window_.show();
  }
  ~QtPopupPresenterTest() override {
    presenter_.reset();
    settle();
  }

  /// Presents from a thread that is not the UI thread, as the SDK does.
  void present(const std::shared_ptr<ViewController>& screen, const std::string& uuid) {
    const auto request = requestFor(screen, uuid);
    request->open = [this, uuid] {
      opened_ += uuid;
      return uuid != refused_;
    };
    std::thread([&] { presenter_->present(request); }).join();
  }

  static std::vector<PopUpWindow*> shownIn(const QWidget& window) {
    std::vector<PopUpWindow*> shown;
    for (auto* popup : window.findChildren<PopUpWindow*>(Qt::FindDirectChildrenOnly)) {
      if (popup->isVisibleTo(&window) && !popup->isDismissing()) shown.push_back(popup);
    }
    return shown;
  }

  static bool waitForPopup(const QWidget& window, const std::string& uuid) {
    return waitFor([&] {
      const auto shown = shownIn(window);
      return shown.size() == 1 && uuidOf(shown.front()) == uuid;
    });
  }

  static PopUpWindow* topLevelPopup() {
    for (auto* widget : QApplication::topLevelWidgets()) {
      if (auto* popup = qobject_cast<PopUpWindow*>(widget)) return popup;
    }
    return nullptr;
  }

  bool said(const std::string& reason) const {
    return fake.console->count("Kifo QtPopupPresenter: the popup is not shown: " + reason) == 1;
  }

  const testing::StillDesktop desktop_;  // on which nothing moves, whatever the host's durations
  PopUpOptions options_;
  std::string opened_;   ///< The popups that were opened.
  std::string refused_;  ///< One whose campaign refuses.
  std::unique_ptr<QtPopupPresenter> presenter_;
  QWidget window_;
  std::shared_ptr<WidgetScreen> screen_ = std::make_shared<WidgetScreen>(&window_);
};

TEST_F(QtPopupPresenterTest, APopupIsInsideTheWindowThatItsScreenIsInAndEachWindowShowsItsOwn) {
  QWidget page(&window_);
  QWidget inner(&page);
  QDialog other;
  const auto screen = std::make_shared<WidgetScreen>(&inner);
  const auto otherScreen = std::make_shared<WidgetScreen>(&other);
  present(screen, "a");
  present(otherScreen, "b");
  EXPECT_TRUE(shownIn(window_).empty()) << "shown before the UI thread got to it";
  ASSERT_TRUE(waitForPopup(window_, "a"));
  EXPECT_EQ(shownIn(window_).front()->geometry(), window_.rect());
  EXPECT_TRUE(waitForPopup(other, "b"));
}

TEST_F(QtPopupPresenterTest, OverOneWindowPopupsAreOpenedAndShownOneAfterTheOther) {
  refused_ = "b";
  for (const char* uuid : {"a", "b", "c"}) present(screen_, uuid);
  for (const auto& [uuid, opened] : {std::pair("a", "a"), std::pair("c", "abc")}) {
    ASSERT_TRUE(waitForPopup(window_, uuid)) << uuid;
    settle();
    EXPECT_EQ(opened_, opened);
    shownIn(window_).front()->closeButtonAction();
  }
  ASSERT_TRUE(waitFor([&] { return window_.findChildren<PopUpWindow*>().empty(); }));
}

TEST_F(QtPopupPresenterTest, WithoutAWindowNothingIsShownAndTheReasonIsSaid) {
  present(nullptr, "a");
  EXPECT_TRUE(waitFor([&] { return said("no screen was given"); }));
  const auto plain = std::make_shared<HomeScreen>();
  present(plain, "b");
  EXPECT_TRUE(waitFor([&] { return said("the screen HomeScreen is in no Qt window"); }));
  auto widget = std::make_unique<QWidget>();
  const auto orphan = std::make_shared<WidgetScreen>(widget.get());
  widget.reset();
  present(orphan, "c");
  EXPECT_TRUE(waitFor([&] { return said("the screen WidgetScreen is in no Qt window"); }));
  EXPECT_EQ(opened_, "") << "what cannot be shown is not opened";
}

TEST_F(QtPopupPresenterTest, AWaitingPopupWhoseScreenDiesIsSaidOnceAndTheNextOneShows) {
  auto doomed = std::make_shared<WidgetScreen>(&window_);
  present(screen_, "a");
  present(doomed, "b");
  present(screen_, "c");
  ASSERT_TRUE(waitForPopup(window_, "a"));
  doomed.reset();
  shownIn(window_).front()->closeButtonAction();
  EXPECT_TRUE(waitForPopup(window_, "c"));
  EXPECT_TRUE(said("its screen is gone"));
  EXPECT_EQ(opened_, "ac");
  ASSERT_EQ(fake.inspector->ofKind("popup").size(), 1u);
  EXPECT_THAT(fake.inspector->ofKind("popup").front().particulars, Contains(Pair("uuid", "b")));
}

TEST_F(QtPopupPresenterTest, AGateThatClosesTheWindowLeavesItsPopupsUnopened) {
  auto window = std::make_unique<QWidget>();
  const auto screen = std::make_shared<WidgetScreen>(window.get());
  const auto request = requestFor(screen, "a");
  request->mayShow = [&] {
    window.reset();
    return true;
  };
  request->open = [&] { return opened_ += "a", true; };
  presenter_->present(request);
  ASSERT_TRUE(waitFor([&] { return said("its window is gone"); }));
  EXPECT_EQ(opened_, "");
}

TEST(QtPopupSwitch, IsThePropertyOfTheOneSwitchAndSaysWhoeverChangedIt) {
  const kifo::testing::InstalledFakePlatform fake;
  QtPopupSwitch popups;
  const QtPopupSwitch other;
  QSignalSpy changes(&popups, &QtPopupSwitch::popupsPausedChanged);
  EXPECT_TRUE(popups.setProperty("popupsPaused", true));
  EXPECT_TRUE(Kifo::popupsPaused());
  EXPECT_TRUE(other.popupsPaused());
  ASSERT_TRUE(waitFor([&] { return changes.size() == 1; }));
  std::thread([] { Kifo::setPopupsPaused(false); }).join();
  ASSERT_TRUE(waitFor([&] { return changes.size() == 2; }));
  EXPECT_EQ(changes[1].front(), false);
}

TEST_F(QtPopupPresenterTest, APageThatIsDeletedUnderItsPopupLeavesItToTheUser) {
  auto page = std::make_unique<QWidget>(&window_);
  auto screen = std::make_shared<WidgetScreen>(page.get());
  present(screen, "a");
  present(screen_, "b");
  ASSERT_TRUE(waitForPopup(window_, "a"));
  screen.reset();
  page.reset();
  settle();
  ASSERT_TRUE(waitForPopup(window_, "a"));
  shownIn(window_).front()->closeButtonAction();
  EXPECT_TRUE(waitForPopup(window_, "b"));
}

TEST_F(QtPopupPresenterTest, AWindowThatGoesTakesItsPopupAndWhatWaitedIsAccountedFor) {
  auto window = std::make_unique<QWidget>();
  window->show();
  auto page = std::make_unique<QWidget>(window.get());
  const auto leaving = std::make_shared<WidgetScreen>(window.get());
  const auto moving = std::make_shared<WidgetScreen>(page.get());
  present(leaving, "a");
  present(leaving, "b");
  present(moving, "c");
  ASSERT_TRUE(waitForPopup(*window, "a"));
  page->setParent(&window_);
  window.reset();
  EXPECT_TRUE(waitForPopup(window_, "c")) << "its screen moved to this window";
  EXPECT_TRUE(said("the screen WidgetScreen is in no Qt window"));
}

TEST_F(QtPopupPresenterTest, APresenterThatGoesLeavesTheShownPopupAndDropsTheRest) {
  present(screen_, "a");
  present(screen_, "b");
  ASSERT_TRUE(waitForPopup(window_, "a"));
  presenter_.reset();
  settle();
  ASSERT_EQ(shownIn(window_).size(), 1u);
  shownIn(window_).front()->closeButtonAction();
  ASSERT_TRUE(waitFor([&] { return window_.findChildren<PopUpWindow*>().empty(); }));
  settle();
  EXPECT_TRUE(window_.findChildren<PopUpWindow*>().empty());
}

TEST_F(QtPopupPresenterTest, OnceTheApplicationIsGonePopupsAreDroppedWithALine) {
  present(screen_, "a");
  // What the application's end does to its children.
  delete qApp->findChild<PopupRouter*>(QString(), Qt::FindDirectChildrenOnly);
  settle();
  EXPECT_TRUE(window_.findChildren<PopUpWindow*>().empty());
  present(screen_, "b");
  EXPECT_TRUE(said("there is no QApplication"));
  EXPECT_EQ(opened_, "");
}

TEST_F(QtPopupPresenterTest, APresenterMadeOffTheUiThreadShowsNothing) {
  std::thread([&] { presenter_ = std::make_unique<QtPopupPresenter>(); }).join();
  present(screen_, "a");
  EXPECT_TRUE(said("there is no QApplication"));
  EXPECT_EQ(opened_, "");
}

TEST_F(QtPopupPresenterTest, ThePopupHasTheHostsOptions) {
  options_.screenWidth = 390;
  presenter_ = std::make_unique<QtPopupPresenter>(options_);
  const auto request = requestFor(screen_, "a");
  request->preferences.image = "http://127.0.0.1:1/picture.png";
  presenter_->present(request);
  ASSERT_TRUE(waitForPopup(window_, "a"));
  EXPECT_EQ(shownIn(window_).front()->state().imageViewHeight, 164);
}

TEST_F(QtPopupPresenterTest, OverAForeignWindowThePopupIsAWindowThatFollowsItToItsEnd) {
  auto foreign = std::make_unique<QRasterWindow>();
  QRasterWindow& window = *foreign;
  window.setGeometry(100, 80, 500, 400);
  window.show();
  const auto screen = std::make_shared<WindowScreen>(&window);
  present(screen, "a");
  present(screen, "b");
  ASSERT_TRUE(waitFor([] { return topLevelPopup() && topLevelPopup()->isVisible(); }));
  PopUpWindow* popup = topLevelPopup();
  EXPECT_EQ(popup->windowHandle()->transientParent(), &window);
  EXPECT_TRUE(popup->windowFlags() & Qt::FramelessWindowHint);
  EXPECT_TRUE(popup->testAttribute(Qt::WA_TranslucentBackground));
  const auto coversWindow = [&] {
    return popup->geometry() == QRect(window.mapToGlobal(QPoint()), window.size());
  };
  EXPECT_TRUE(waitFor(coversWindow));
  window.setGeometry(150, 120, 640, 480);
  EXPECT_TRUE(waitFor(coversWindow));
  window.hide();
  EXPECT_FALSE(popup->isVisible());
  window.show();
  EXPECT_TRUE(popup->isVisible());
  popup->closeButtonAction();
  EXPECT_TRUE(waitFor([] { return topLevelPopup() && uuidOf(topLevelPopup()) == "b"; }));
  foreign.reset();
  EXPECT_TRUE(waitFor([] { return topLevelPopup() == nullptr; }));
}

/// Runs where one_window.sh starts it.
TEST_F(QtPopupPresenterTest, OverASceneOnTheOnlyWindowThereIsNothingIsShownAndTheReasonIsSaid) {
  const std::string platformName = QGuiApplication::platformName().toStdString();
  if (platformName != "eglfs") GTEST_SKIP() << platformName << " has more windows than one";
  window_.hide();
  QRasterWindow scene;
  const auto screen = std::make_shared<WindowScreen>(&scene);
  const auto request = requestFor(screen, "a");
  request->open = [] {
    ADD_FAILURE() << "a show was spent";
    return true;
  };
  presenter_->present(request);
  EXPECT_TRUE(waitFor(
      [&] { return said("the platform eglfs has no second window for a popup over the scene"); }));
  EXPECT_EQ(fake.inspector->ofKind("popup").size(), 1u);
  EXPECT_EQ(topLevelPopup(), nullptr);
}

}  // namespace
}  // namespace kifo
