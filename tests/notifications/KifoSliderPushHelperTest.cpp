#include "Kifo_iOS_Common_Kit/notifications/KifoSliderPushHelper.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

using ::testing::InSequence;
using Position = CollectionView::ScrollPosition;

class MockCollectionView : public CollectionView {
 public:
  MOCK_METHOD(double, width, (), (const, override));
  MOCK_METHOD(void, setPagingEnabled, (bool), (override));
  MOCK_METHOD(void, scrollToItem, (int, int, Position, bool), (override));
};

Notification pushWith(UserInfo userInfo) {
  return {{"id", std::make_shared<NotificationContent>(contentOfPush(std::move(userInfo)))}};
}

std::vector<std::string> imagesOf(const char* data) {
  return KifoSliderPushHelper::getImageList(pushWith({{"data", data}}));
}

TEST(KifoSliderPushHelper, TheImageListHoldsTheAddressesThatCanBeReadInOrder) {
  EXPECT_THAT(imagesOf(R"({"images": [{"url": "b"}, {}, {"url": null}, {"url": "a"}]})"),
              ElementsAre("b", "a"));
  for (const char* data :
       {R"({"images": [{}]})", "{}", "[]", "no json", R"({"images": [{"url": 1}]})",
        R"({"images": [{"url": "a"}], "uuid": 1})"}) {
    EXPECT_THAT(imagesOf(data), IsEmpty()) << data;
  }
  EXPECT_THAT(KifoSliderPushHelper::getImageList(pushWith({{"data", {{"images", {}}}}})),
              IsEmpty());
  const testing::InstalledFakePlatform fake;
  EXPECT_THAT(KifoSliderPushHelper::getImageList({}), IsEmpty());
  EXPECT_THAT(fake.console->lines(),
              ElementsAre("Kifo KifoSliderPushHelper: bestAttemptContent couldn't be assigned"));
}

TEST(KifoSliderPushHelper, ScrollingGoesFromTheLastImageToTheFirstAndBackWithPagingOffMeanwhile) {
  struct Case {
    int from, to;
    bool forward;
  };
  for (const Case& c : {Case{0, 1, true}, Case{3, 4, true}, Case{4, 0, true}, Case{4, 3, false},
                        Case{1, 0, false}, Case{0, 4, false}}) {
    ::testing::StrictMock<MockCollectionView> view;
    const InSequence order;
    EXPECT_CALL(view, setPagingEnabled(false));
    EXPECT_CALL(view, scrollToItem(c.to, 0, c.forward ? Position::right : Position::left, true));
    EXPECT_CALL(view, setPagingEnabled(true));
    EXPECT_EQ(c.forward ? KifoSliderPushHelper::scrollNextItem(&view, c.from, 5)
                        : KifoSliderPushHelper::scrollPreviousItem(&view, c.from, 5),
              c.to);
  }
}

TEST(KifoSliderPushHelperDeathTest, AMissingViewEndsTheProcess) {
  EXPECT_DEATH(KifoSliderPushHelper::scrollNextItem(nullptr, 0, 5), "needs its collection view");
}

}  // namespace
}  // namespace kifo
