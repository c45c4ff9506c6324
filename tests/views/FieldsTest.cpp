#include <gtest/gtest.h>

#include <functional>

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

TEST(PopUpWindowFields, EachKindHasItsListsHeightAndAllButTwoCountAsEmoji) {
  const struct {
    std::optional<std::string> type;
    int rows;
    double height;
    PopupType kind;
  } cases[] = {{"SURVEY", 3, 160, PopupType::survey}, {"SURVEY", 4, 200, PopupType::survey},
               {"POPUP", 0, 10, PopupType::popup},    {"POPUP", 5, 260, PopupType::popup},
               {"EMOJI", 3, 150, PopupType::emoji},   {"SCORE", 2, 100, PopupType::emoji},
               {"survey", 5, 250, PopupType::emoji},  {std::nullopt, 5, 250, PopupType::emoji}};
  for (const auto& each : cases) {
    PopupRequest request = requestOf(each.type);
    request.preferences.buttons = request.preferences.choices = some(each.rows);
    const auto fields = PopUpWindowFields::from(request, 414);
    EXPECT_EQ(fields.tableViewHeigth, each.height) << each.type.value_or("none");
    EXPECT_EQ(fields.popupType, each.kind) << each.type.value_or("none");
  }
}

TEST(PopUpWindowFields, APictureIsHalfAsHighAsThePanelIsWide) {
  PopupPreferences preferences;
  EXPECT_EQ(PopUpWindowFields::imageHeight(preferences, 390), 0);
  preferences.images = {"https://pictures.example/1.png"};
  EXPECT_EQ(PopUpWindowFields::imageHeight(preferences, 390), 164);
  EXPECT_EQ(PopUpWindowFields::imageHeight(preferences, 414), 172);
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

TEST(PopUpWindowHeights, ThePanelsHeightIsThatOfItsKindAndContents) {
  const struct {
    const char* what;
    const char* type;
    std::function<void(PopupPreferences&)> describe;
    double height;
  } cases[] = {
      {"two buttons", "POPUP",
       [](auto& p) {
         p.detailText = "text";
         p.submitButton = some(1).front();
         p.buttons = some(2);
       },
       395},
      {"emojis", "EMOJI",
       [](auto& p) {
         p.detailText = "";
         p.questionText = "Which?";
         p.submitButton = some(1).front();
       },
       348},
      {"a score", "SCORE", [](auto&) {}, 244},
      {"a score with a carousel", "SCORE",
       [](auto& p) {
         p.images = {"a", "b"};
       },
       454},
      {"a bare field", "OPEN_ENDED", [](auto&) {}, 148},
      {"a field with a question", "OPEN_ENDED",
       [](auto& p) { p.appCommunicationItem->defaultFreeText = DefaultFreeText{}; }, 200},
      {"a coupon", "POPUP", [](auto& p) { p.appCommunicationItem->coupon = Coupon{}; }, 301},
      {"one of many pictures", "POPUP", [](auto& p) { p.images = {"a"}; }, 367},
      {"the item's own type", nullptr, [](auto& p) { p.appCommunicationItem->type = "OPEN_ENDED"; },
       148}};
  for (const auto& each : cases) {
    PopupRequest request =
        requestOf(each.type ? std::optional<std::string>(each.type) : std::nullopt);
    each.describe(request.preferences);
    EXPECT_EQ(heightsOf(request).totalHeight, each.height) << each.what;
  }
}

}  // namespace
}  // namespace kifo
