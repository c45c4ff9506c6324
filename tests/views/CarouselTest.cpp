#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

class CarouselTest : public PopupTest {
 protected:
  CarouselTest() {
    options.reducedMotion = false;
    options.durations.fade = {};
    options.durations.carouselInterval = std::chrono::hours(1);
    campaign("POPUP");
  }
};

TEST_P(CarouselTest, AdvancesPageByPageAndWrapsWithoutMoving) {
  pictures(3);
  present();
  settle();
  ASSERT_TRUE(toolkit->turnsPages());
  const std::pair<int, bool> steps[] = {{1, true}, {2, true}, {0, false}, {1, true}};
  for (const auto& [page, animated] : steps) {
    toolkit->turnPage();
    EXPECT_EQ(toolkit->state()->currentIndex, page);
    EXPECT_EQ(text("pageIndicator"), QString("Image %1 of 3").arg(page + 1));
    EXPECT_EQ(toolkit->isSliding(), animated);
  }
  EXPECT_EQ(fake.console->count("Kifo PopUpWindow: image list avaliable"), 1u);
}

TEST_P(CarouselTest, AdvancesByItself) {
  pictures(2);
  options.durations.carouselInterval = std::chrono::milliseconds(1);
  present();
  EXPECT_TRUE(QTest::qWaitFor([this] { return toolkit->state()->currentIndex == 1; }, 5000));
}

TEST_P(CarouselTest, OnePictureIsNoCarousel) {
  pictures(1);
  request->preferences.image = "https://pictures.example/single";
  present();
  settle();
  EXPECT_TRUE(box("popupImageViewList").isEmpty());
  EXPECT_FALSE(toolkit->turnsPages());
  ASSERT_EQ(fake.http->count(), 1u);
  EXPECT_EQ(fake.http->requests()[0].url, "https://pictures.example/single");
  EXPECT_EQ(fake.console->count("Kifo PopUpWindow: popup type : POPUP"), 1u);
  EXPECT_EQ(fake.console->count("Kifo PopUpWindow: image list unavaliable"), 1u);
}

TEST_P(CarouselTest, ClosingStopsItAndAnOpenEndedAnswerLeavesItRunning) {
  pictures(2);
  options.durations.fade = std::chrono::hours(1);
  for (const bool atOnce : {true, false}) {
    present();
    if (!atOnce) settle();
    toolkit->dismiss();
    QCoreApplication::processEvents();
    EXPECT_TRUE(isGone() || !toolkit->turnsPages());
    delete toolkit->popup();
  }
  present("OPEN_ENDED");
  settle();
  toolkit->submit();
  EXPECT_TRUE(toolkit->turnsPages());
}

TEST_P(CarouselTest, FetchesOnlyWhatIsNearAndKeepsFewCells) {
  options.durations.scroll = {};
  pictures(1000);
  present();
  EXPECT_EQ(fake.http->count(), 2u);
  for (int page = 1; page <= 40; ++page) toolkit->turnPage();
  settle();
  EXPECT_EQ(fake.http->count(), 42u);
  EXPECT_LT(toolkit->parts().size(), 40u);
}

TEST_P(CarouselTest, ASwipeTowardsTheNextPageShowsItTurnsToItAndTouchesNothing) {
  options.durations.scroll = {};
  pictures(3);
  bodyAction("app://offers");
  fake.http->setHandler([](const HttpRequest& asked) {
    const QColor color = asked.url.back() == '0' ? Qt::red : Qt::blue;
    return HttpAnswer{{}, 200, pictureBytes({400, 400}, color)};
  });
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    options.layoutDirection = direction;
    present();
    finishDecoding();
    const int onwards = direction == Qt::LeftToRight ? 1 : -1;
    const QRect list = box("popupImageViewList");
    const QPoint middle = list.center();
    EXPECT_EQ(colorAt(middle), QColor(Qt::red));
    drag(middle, middle - QPoint(20 * onwards, 0));
    EXPECT_EQ(toolkit->state()->currentIndex, 0) << "not far enough";
    drag(middle, middle - QPoint(140 * onwards, 0), false);
    EXPECT_EQ(colorAt(middle + QPoint(130 * onwards, 0)), QColor(Qt::blue));
    EXPECT_EQ(colorAt(middle - QPoint(80 * onwards, 0)), QColor(Qt::red));
    QTest::mouseRelease(&toolkit->window(), Qt::LeftButton, {}, middle - QPoint(140 * onwards, 0));
    EXPECT_EQ(toolkit->state()->currentIndex, 1);
    EXPECT_FALSE(toolkit->isFading()) << "the body was not touched";
    key(onwards > 0 ? Qt::Key_Right : Qt::Key_Left);
    EXPECT_EQ(toolkit->state()->currentIndex, 2);
    clickAt(middle);
    EXPECT_TRUE(isGone()) << "a press is one of the body";
  }
}

TEST_P(CarouselTest, APageWaitsForItsPictureAndShowsNothingBrokenWithoutIt) {
  pictures(3);
  present();
  EXPECT_TRUE(toolkit->isLoading(0));
  const QRect list = box("popupImageViewList");
  fake.http->answer(0, 200, pictureBytes({400, 100}, Qt::red));
  fake.http->answer(1, 200, "this is no picture");
  finishDecoding();
  EXPECT_EQ(colorAt(list.center()), QColor(Qt::red));
  EXPECT_EQ(box("popupImageViewList"), list);
  for (const int page : {0, 1}) EXPECT_FALSE(toolkit->isLoading(page));
}

TEST_P(CarouselTest, ATextThatIsNoUrlIsNamedAndNotFetched) {
  request->preferences.images = {"http://exa mple/ü%%", ""};
  present();
  EXPECT_EQ(fake.http->count(), 0u);
  const std::string line =
      "Kifo KifoImageCollectionViewCell: Failed to present attachment due to an invalid url: ";
  EXPECT_EQ(fake.console->count(line + "http://exa mple/ü%%"), 1u);
  EXPECT_EQ(fake.console->count(line), 1u);
}

KIFO_ON_EACH_TOOLKIT(CarouselTest);

}  // namespace
}  // namespace kifo::testing
