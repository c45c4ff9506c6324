#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoImageCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/ActivityIndicator.h"
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

  void pictures(int count) {
    for (int i = 0; i < count; ++i) {
      request->preferences.images.push_back("https://pictures.example/" + std::to_string(i));
    }
  }

  PopupCarousel* list() { return elements().popupImageViewList; }
};

TEST_F(CarouselTest, AdvancesPageByPageAndWrapsWithoutMoving) {
  pictures(3);
  present();
  EXPECT_EQ(popup->timer(), nullptr) << "it starts once the popup is up";
  settle();
  ASSERT_TRUE(popup->timer());
  const std::pair<int, bool> steps[] = {{1, true}, {2, true}, {0, false}, {1, true}};
  for (const auto& [page, animated] : steps) {
    popup->scrollImageListTimer();
    EXPECT_EQ(popup->state().currentIndex, page);
    EXPECT_EQ(list()->currentPage(), page);
    EXPECT_EQ(elements().pageIndicator->currentPage(), page);
    EXPECT_EQ(list()->isScrolling(), animated);
  }
  EXPECT_EQ(elements().pageIndicator->numberOfPages(), 3);
  EXPECT_EQ(fake.console->count("Kifo PopUpWindow: image list avaliable"), 1u);
}

TEST_F(CarouselTest, AdvancesByItself) {
  pictures(2);
  options.durations.carouselInterval = std::chrono::milliseconds(1);
  present();
  EXPECT_TRUE(QTest::qWaitFor([this] { return popup->state().currentIndex == 1; }, 5000));
}

TEST_F(CarouselTest, OnePictureIsNoCarousel) {
  pictures(1);
  request->preferences.image = "https://pictures.example/single";
  present();
  settle();
  EXPECT_EQ(list(), nullptr);
  EXPECT_EQ(popup->timer(), nullptr);
  ASSERT_EQ(fake.http->count(), 1u);
  EXPECT_EQ(fake.http->requests()[0].url, "https://pictures.example/single");
  EXPECT_EQ(fake.console->count("Kifo PopUpWindow: popup type : POPUP"), 1u);
  EXPECT_EQ(fake.console->count("Kifo PopUpWindow: image list unavaliable"), 1u);
}

TEST_F(CarouselTest, ClosingStopsItAndAnOpenEndedAnswerLeavesItRunning) {
  pictures(2);
  options.durations.fade = std::chrono::hours(1);
  present();
  settle();
  close();
  EXPECT_EQ(popup->timer(), nullptr);
  delete popup;
  campaign("OPEN_ENDED");
  present();
  settle();
  popup->submitButtonPressed();
  EXPECT_TRUE(popup->isDismissing());
  EXPECT_TRUE(popup->timer());
}

TEST_F(CarouselTest, FetchesOnlyWhatIsNearAndKeepsFewCells) {
  pictures(1000);
  present();
  EXPECT_EQ(fake.http->count(), 2u);
  popup->scrollImageListTimer();
  EXPECT_TRUE(QTest::qWaitFor([this] { return !list()->isScrolling(); }, 5000));
  EXPECT_EQ(fake.http->count(), 3u);
  EXPECT_TRUE(list()->cellForItem(1));
  EXPECT_LE(popup->findChildren<KifoImageCollectionViewCell*>().size(), 4);
}

TEST_F(CarouselTest, ASwipeTowardsTheNextPageTurnsItAndTouchesNothing) {
  pictures(3);
  item->action = std::make_shared<AppCommunicationItemAction>();
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    options.layoutDirection = direction;
    present();
    const int onwards = direction == Qt::LeftToRight ? 1 : -1;
    EXPECT_EQ(list()->cellForItem(0)->x(), 0);
    EXPECT_EQ(list()->cellForItem(1)->x(), onwards * list()->QWidget::width());
    const QPoint middle = list()->rect().center();
    drag(list(), middle, middle - QPoint(140 * onwards, 0));
    EXPECT_EQ(popup->state().currentIndex, 1);
    EXPECT_FALSE(popup->isDismissing());
    dismiss();
  }
}

TEST_F(CarouselTest, ACellShowsItsPictureAWheelUntilThenAndNothingBrokenWithoutIt) {
  pictures(3);
  present();
  auto* first = list()->cellForItem(0);
  EXPECT_TRUE(first->activityIndicatorView()->isAnimating());
  const QSize size = first->size();
  fake.http->answer(0, 200, pictureBytes({400, 100}, Qt::red));
  fake.http->answer(1, 200, "this is no picture");
  finishDecoding();
  EXPECT_FALSE(first->imageView()->image().isNull());
  EXPECT_FALSE(first->activityIndicatorView()->isAnimating());
  EXPECT_EQ(first->size(), size);
  auto* second = list()->cellForItem(1);
  EXPECT_TRUE(second->imageView()->image().isNull());
  EXPECT_FALSE(second->activityIndicatorView()->isAnimating());
}

TEST_F(CarouselTest, ATextThatIsNoUrlIsNamedAndNotFetched) {
  request->preferences.images = {"http://exa mple/ü%%", ""};
  present();
  EXPECT_EQ(fake.http->count(), 0u);
  const std::string line =
      "Kifo KifoImageCollectionViewCell: Failed to present attachment due to an invalid url: ";
  EXPECT_EQ(fake.console->count(line + "http://exa mple/ü%%"), 1u);
  EXPECT_EQ(fake.console->count(line), 1u);
}

}  // namespace
}  // namespace kifo::testing
