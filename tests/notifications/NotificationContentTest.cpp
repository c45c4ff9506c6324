#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationRecordFields.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

struct Push {
  const char* userInfo;
  const char* title;
  const char* body;
};

class PushTexts : public ::testing::TestWithParam<Push> {};

TEST_P(PushTexts, AreFoundWhereTheServicePutsThem) {
  const UserInfo userInfo = valueFromJson(GetParam().userInfo).value();
  const auto content = contentOfPush(userInfo);
  EXPECT_EQ(content.title, GetParam().title);
  EXPECT_EQ(content.body, GetParam().body);
  EXPECT_EQ(content.userInfo, userInfo);
}

INSTANTIATE_TEST_SUITE_P(
    NotificationContent, PushTexts,
    ::testing::Values(
        Push{R"({"aps": {"alert": {"title": "T", "body": "B"}}, "notification": {"title": "x"}})",
             "T", "B"},
        Push{R"({"aps": {"alert": "B"}, "title": "x"})", "", "B"},
        Push{R"({"aps": {"badge": 1}, "notification": {"title": "T"}, "body": "x"})", "T", ""},
        Push{R"({"title": "T", "body": "B", "data": "{}"})", "T", "B"},
        Push{R"({"title": 1, "body": ["B"]})", "", ""}, Push{"[]", "", ""}, Push{"null", "", ""}));

TEST(NotificationContent, EveryMemberOfTheCampaignIsReadAndWrittenUnderItsKey) {
  const auto whole = nlohmann::json::parse(R"({
    "type": "t", "uuid": "u", "code": "c", "actorId": "a", "pushToken": "p", "name": "n",
    "triggeringEventName": "e", "image": "i", "buttons": [{"id": "b", "action": {"link": "l"}}],
    "applicationName": "m", "scenario": "s", "action": {"link": "x", "type": "url"},
    "images": [{"url": "1"}], "sliderSupport": true})");
  const auto item = campaignOf({{"data", whole.dump()}});
  ASSERT_TRUE(item);
  EXPECT_EQ(nlohmann::json::parse(encode(*item)), whole);
}

TEST(NotificationContent, TheDescriptionNamesTheKeysOfTheUserInfoAndNotItsValues) {
  const auto line = description(contentOfPush({{"title", "Sale"}, {"data", "secret"}}));
  EXPECT_THAT(line, HasSubstr("title: Sale"));
  EXPECT_THAT(line, HasSubstr("userInfo: [data, title]"));
  EXPECT_THAT(line, Not(HasSubstr("secret")));
}

}  // namespace
}  // namespace kifo
