#include "platform/qt/PushCarousel.h"

#include <QAbstractButton>
#include <QtTest>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoImageCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

Notification pushWithImages(int count) {
  Value::List images;
  for (int index = 0; index < count; ++index) {
    images.push_back(Value{{"url", "https://host/" + std::to_string(index) + ".png"}});
  }
  const std::string campaign = jsonFromValue(Value{{"images", images}, {"sliderSupport", true}});
  return {{"push", std::make_shared<NotificationContent>(contentOfPush({{"data", campaign}}))}};
}

class PushCarouselTest : public testing::FakesTest {
 protected:
  PushCarouselTest() {
    options_.durations.scroll = std::chrono::milliseconds(1);
    make(3);
  }

  void make(int images) {
    carousel_ = std::make_unique<PushCarousel>(nullptr, options_);
    carousel_->setNotification(pushWithImages(images));
    carousel_->resize(375, carousel_->heightForWidth(375));
    carousel_->show();
  }
  QAbstractButton* button(const char* name) {
    for (auto* button : carousel_->findChildren<QAbstractButton*>()) {
      if (button->accessibleName() == QLatin1String(name)) return button;
    }
    return nullptr;
  }
  /// Waits until the page `row` fills the view.
  bool shows(int row) {
    return QTest::qWaitFor([&] {
      const auto* cell = carousel_->pages()->cellForItem(row);
      return !carousel_->pages()->isScrolling() && cell && cell->x() == 0;
    });
  }

  PopUpOptions options_;
  std::unique_ptr<PushCarousel> carousel_;
};

TEST_F(PushCarouselTest, ButtonsAndKeysGoFromTheLastImageToTheFirstAndBack) {
  button("Next image")->click();
  EXPECT_EQ(carousel_->currentIndex(), 1);
  EXPECT_TRUE(shows(1));
  QTest::keyClick(carousel_->pages(), Qt::Key_Right);
  QTest::keyClick(carousel_->pages(), Qt::Key_Right);
  EXPECT_EQ(carousel_->currentIndex(), 0);
  EXPECT_TRUE(shows(0));
  button("Previous image")->click();
  EXPECT_EQ(carousel_->currentIndex(), 2);
  EXPECT_TRUE(shows(2));
  EXPECT_EQ(carousel_->pages()->accessibleName(), "Image 3 of 3");
  carousel_->setLayoutDirection(Qt::RightToLeft);
  QTest::keyClick(carousel_->pages(), Qt::Key_Left);
  EXPECT_EQ(carousel_->currentIndex(), 0) << "right to left the arrow keys change places";
}

TEST_F(PushCarouselTest, ASwipeChangesTheImageToo) {
  const QSignalSpy changed(carousel_.get(), &PushCarousel::currentIndexChanged);
  QTest::mousePress(carousel_->pages(), Qt::LeftButton, {}, {300, 100});
  QTest::mouseMove(carousel_->pages(), {100, 100});
  QTest::mouseRelease(carousel_->pages(), Qt::LeftButton, {}, {100, 100});
  EXPECT_EQ(carousel_->currentIndex(), 1);
  ASSERT_EQ(changed.size(), 1);
  EXPECT_EQ(changed[0][0].toInt(), 1);
  EXPECT_TRUE(shows(1));
}

TEST_F(PushCarouselTest, ThePageAndTheButtonsTakeTheirHeightAndOneImageHasNoButtons) {
  EXPECT_EQ(carousel_->pages()->size(), QSize(375, 355));
  EXPECT_EQ(carousel_->height(), 355 + 44);
  make(1);
  EXPECT_FALSE(button("Next image")->isVisible());
  EXPECT_EQ(carousel_->heightForWidth(375), 355);
  carousel_->showNext();
  EXPECT_EQ(carousel_->currentIndex(), 0);
  make(0);
  EXPECT_TRUE(carousel_->isEmpty());
  EXPECT_EQ(carousel_->heightForWidth(375), 0);
}

TEST_F(PushCarouselTest, TheLastOneGivenImagesIsTheKnownOneUntilItIsDeleted) {
  EXPECT_EQ(NotificationManager::collectionView(), carousel_->pages());
  auto later = std::make_unique<PushCarousel>();
  later->setNotification(pushWithImages(2));
  carousel_.reset();
  EXPECT_EQ(NotificationManager::collectionView(), later->pages());
  later.reset();
  EXPECT_EQ(NotificationManager::collectionView(), nullptr);
}

}  // namespace
}  // namespace kifo
