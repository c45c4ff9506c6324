#include "platform/qt/QtScreen.h"

#include <QtTest/qtestspontaneevent.h>
#include <QApplication>
#include <QDialog>
#include <QMainWindow>
#include <QStackedWidget>

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "tests/support/PageEvents.h"

namespace kifo::shopfront {

class HomeScreen : public QtScreen<QWidget> {
  Q_OBJECT
  using QtScreen::QtScreen;
};

class SeasonScreen : public HomeScreen {
  Q_OBJECT
  using HomeScreen::HomeScreen;
};

class MainScreen : public QtScreen<QMainWindow> {
  Q_OBJECT
};

class WithoutMacro : public QtScreen<QDialog> {
 public:
  int showEvents = 0;

 protected:
  void showEvent(QShowEvent* event) override {
    ++showEvents;
    QtScreen::showEvent(event);
  }
};

}  // namespace kifo::shopfront

namespace kifo {
namespace {

using shopfront::HomeScreen;

class QtScreenTest : public testing::FakesTest {
 protected:
  std::vector<std::string> pageEvents() { return testing::takeEvents(*fake_.inspector); }
};

TEST_F(QtScreenTest, AScreenIsNamedAfterItsOwnClassWhateverItDerivesFrom) {
  EXPECT_EQ(shopfront::SeasonScreen().viewController()->className(), "SeasonScreen");
  EXPECT_EQ(shopfront::MainScreen().viewController()->className(), "MainScreen");
  shopfront::WithoutMacro dialog;
  dialog.show();
  EXPECT_EQ(dialog.showEvents, 1) << "the widget's own handler still runs";
  EXPECT_THAT(pageEvents(), ElementsAre("page_in WithoutMacro"));
}

TEST_F(QtScreenTest, APageOfAStackIsLeftWhenTheNextOneIsEntered) {
  QStackedWidget stack;
  stack.addWidget(new HomeScreen);
  stack.addWidget(new shopfront::SeasonScreen);
  stack.show();
  EXPECT_THAT(pageEvents(), ElementsAre("page_in HomeScreen"));
  stack.setCurrentIndex(1);
  EXPECT_THAT(pageEvents(), UnorderedElementsAre("page_out HomeScreen", "page_in SeasonScreen"));
}

TEST_F(QtScreenTest, ShowingItAgainOrMinimisingTheWindowAndBringingItBackSendsNothing) {
  HomeScreen screen;
  EXPECT_THAT(pageEvents(), IsEmpty());
  screen.show();
  EXPECT_THAT(pageEvents(), ElementsAre("page_in HomeScreen"));
  screen.show();
  // The window system reports both as spontaneous events.
  QHideEvent minimised;
  QShowEvent restored;
  for (QEvent* event : {static_cast<QEvent*>(&minimised), static_cast<QEvent*>(&restored)}) {
    QSpontaneKeyEvent::setSpontaneous(event);
    static_cast<QObject&>(screen).event(event);
  }
  EXPECT_THAT(pageEvents(), IsEmpty());
}

TEST_F(QtScreenTest, AScreenThatIsDestroyedWhileShownIsLeftAndOneNeverShownIsNot) {
  std::weak_ptr<ViewController> neverShown;
  {
    HomeScreen hidden;
    neverShown = hidden.viewController();
  }
  EXPECT_THAT(pageEvents(), IsEmpty());
  EXPECT_TRUE(neverShown.expired());
  auto screen = std::make_unique<HomeScreen>();
  screen->show();
  const std::shared_ptr<QtScreenController> controller = screen->viewController();
  EXPECT_EQ(controller->widget(), screen.get());
  pageEvents();
  screen.reset();
  EXPECT_THAT(pageEvents(), ElementsAre("page_out HomeScreen"));
  EXPECT_EQ(controller->widget(), nullptr);
  EXPECT_EQ(controller->className(), "HomeScreen");
}

}  // namespace
}  // namespace kifo

#include "QtScreenTest.moc"
