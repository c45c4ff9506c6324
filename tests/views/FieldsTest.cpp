#include <gtest/gtest.h>

#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindowFields.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindowHeights.h"

namespace kifo {
namespace {

std::vector<std::shared_ptr<AppCommunicationItemButton>> some(int count) {
  std::vector<std::shared_ptr<AppCommunicationItemButton>> buttons;
  for (int i = 0; i < count; ++i) {
    buttons.push_back(std::make_shared<AppCommunicationItemButton>());
    buttons.back()->id = std::to_string(i);
  }
  return buttons;
}

PopupRequest requestOf(std::optional<std::string> type) {
  PopupRequest request;
  request.preferences.type = std::move(type);
  request.preferences.appCommunicationItem = std::make_shared<AppCommunicationItem>();
  return request;
}

PopUpWindowHeights heightsOf(const PopupRequest& request, double screenWidth = 414) {
  return PopUpWindowHeights::of(PopUpWindowFields::from(request, screenWidth), request.preferences);
}

TEST(PopUpWindowFields, OnlyPlainPopupsAndSurveysKeepTheirKind) {
  EXPECT_EQ(PopUpWindowFields::from(requestOf("POPUP"), 414).popupType, PopupType::popup);
  EXPECT_EQ(PopUpWindowFields::from(requestOf("SURVEY"), 414).popupType, PopupType::survey);
  const std::optional<std::string> others[] = {"EMOJI", "SCORE", "OPEN_ENDED", "survey",
                                               std::nullopt};
  for (const auto& type : others) {
    EXPECT_EQ(PopUpWindowFields::from(requestOf(type), 414).popupType, PopupType::emoji);
  }
}

struct ListCase {
  const char* type;
  int rows;
  double height;
};

class ListHeight : public ::testing::TestWithParam<ListCase> {};

TEST_P(ListHeight, FollowsTheKindsOwnRule) {
  PopupRequest request = requestOf(GetParam().type);
  request.preferences.buttons = request.preferences.choices = some(GetParam().rows);
  EXPECT_EQ(PopUpWindowFields::from(request, 414).tableViewHeigth, GetParam().height);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ListHeight,
                         ::testing::Values(ListCase{"SURVEY", 3, 160}, ListCase{"SURVEY", 4, 200},
                                           ListCase{"SURVEY", 20, 200}, ListCase{"POPUP", 0, 10},
                                           ListCase{"POPUP", 5, 260}, ListCase{"EMOJI", 3, 150},
                                           ListCase{"SCORE", 2, 100}));

TEST(PopUpWindowFields, APictureIsHalfAsHighAsThePanelIsWide) {
  PopupPreferences preferences;
  EXPECT_EQ(PopUpWindowFields::imageHeight(preferences, 390), 0);
  preferences.images = {"https://pictures.example/1.png"};
  EXPECT_EQ(PopUpWindowFields::imageHeight(preferences, 390), 164);
  EXPECT_EQ(PopUpWindowFields::imageHeight(preferences, 399), 168.5);
  EXPECT_EQ(PopUpWindowFields::imageHeight(preferences, 400), 165);
  EXPECT_EQ(PopUpWindowFields::imageHeight(preferences, 414), 172);
}

TEST(PopUpWindowFields, TextsThatAreEmptyTakeNoHeight) {
  PopupRequest request = requestOf("EMOJI");
  request.preferences.detailText = "";
  request.preferences.questionText = "Which?";
  const auto fields = PopUpWindowFields::from(request, 414);
  EXPECT_EQ(fields.popupDescriptionHeight, 0);
  EXPECT_EQ(fields.popupQuestionHeight, 50);
  EXPECT_EQ(fields.submitButtonHeight, 0);
}

TEST(PopUpWindowFields, ARowIsFoundByItsIdAndTwoAbsentIdsAreEqual) {
  PopupRequest request = requestOf("SURVEY");
  request.preferences.choices = some(3);
  request.preferences.choices[1]->id.reset();
  request.preferences.choices[2]->id = "0";
  const auto fields = PopUpWindowFields::from(request, 414);
  AppCommunicationItemButton asked;
  EXPECT_EQ(fields.rowOf(asked), 1);
  asked.id = "0";
  EXPECT_EQ(fields.rowOf(asked), 0) << "the first of two with the same id";
  asked.id = "elsewhere";
  EXPECT_EQ(fields.rowOf(asked), std::nullopt);
}

TEST(PopUpWindowHeights, APlainPopupCountsItsListAndAHundred) {
  PopupRequest request = requestOf("POPUP");
  request.preferences.detailText = "text";
  request.preferences.submitButton = some(1).front();
  request.preferences.buttons = some(2);
  EXPECT_EQ(heightsOf(request).totalHeight, 395);
}

TEST(PopUpWindowHeights, EmojisCountTheirQuestionTheirRowAndTheFreeTextBlock) {
  PopupRequest request = requestOf("EMOJI");
  request.preferences.questionText = "Which?";
  request.preferences.submitButton = some(1).front();
  EXPECT_EQ(heightsOf(request).totalHeight, 348);
  EXPECT_TRUE(heightsOf(request).isEmoji);
}

TEST(PopUpWindowHeights, AScoreCountsItsSliderAndACarouselASpaceMore) {
  PopupRequest request = requestOf("SCORE");
  const double bare = 50 + 35 + 100 + 30 + 17 + 12;
  EXPECT_EQ(heightsOf(request).totalHeight, bare);
  request.preferences.images = {"a", "b"};
  EXPECT_EQ(heightsOf(request).totalHeight, bare + 172 + 28 + 10);
}

TEST(PopUpWindowHeights, AnOpenEndedQuestionCountsItsFieldOrItsWholeBlock) {
  PopupRequest request = requestOf("OPEN_ENDED");
  EXPECT_EQ(heightsOf(request).totalHeight, 50 + 35 + 15 + 36 + 12);
  request.preferences.appCommunicationItem->defaultFreeText = DefaultFreeText{};
  EXPECT_EQ(heightsOf(request).totalHeight, 50 + 35 + 15 + 100);
}

TEST(PopUpWindowHeights, ACouponAndMoreThanOnePictureAddTheirs) {
  PopupRequest request = requestOf("POPUP");
  const double bare = heightsOf(request).totalHeight;
  request.preferences.appCommunicationItem->coupon = Coupon{};
  EXPECT_EQ(heightsOf(request).totalHeight, bare + 106);
  request.preferences.images = {"a"};
  EXPECT_EQ(heightsOf(request).totalHeight, bare + 106 + 172)
      << "one picture has no page indicator";
  request.preferences.images = {"a", "b"};
  EXPECT_EQ(heightsOf(request).totalHeight, bare + 106 + 172 + 10);
}

TEST(PopUpWindowHeights, WithoutATypeTheItemsOwnDecides) {
  PopupRequest request = requestOf(std::nullopt);
  request.preferences.appCommunicationItem->type = "OPEN_ENDED";
  EXPECT_EQ(layoutKind(request.preferences), PopupType::openEnded);
  EXPECT_EQ(heightsOf(request).totalHeight, 50 + 35 + 15 + 36 + 12);
}

}  // namespace
}  // namespace kifo
