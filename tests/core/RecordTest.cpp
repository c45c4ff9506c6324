
#include <nlohmann/json.hpp>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

class RefusedAnswer : public ::testing::TestWithParam<const char*> {};

TEST_P(RefusedAnswer, OneBadMemberSpoilsTheWholeAnswer) {
  EXPECT_FALSE(decode<AppCommunication>(std::string_view(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(
    Record, RefusedAnswer,
    ::testing::Values(R"({"configuration": {}})", R"({"configuration": {"stopAllEvents": null}})",
                      R"({"configuration": {"stopAllEvents": 1}})",
                      R"({"configuration": {"stopAllEvents": false, "offlineQueueSize": "10"}})",
                      R"({"configuration": {"stopAllEvents": false, "offlineQueueSize": 1.5}})",
                      R"({"model": [{"maxShowCount": "3"}]})", R"({"model": [null]})",
                      R"({"model": {}})",
                      R"({"model": [{"selection": {"value": 5, "selectedOperator": "GREATER"}}]})",
                      R"({"model": [{"coupon": {"code": {"text": "A", "color": "0"}}}]})",
                      R"({"model": [{"header": "title"}]})", R"({"blockedEvents": ["login"]})",
                      R"({"model": [{"maxScore": 9223372036854775808}]})", "[]", "null", "", "{",
                      "{\"model\": [}", "{\"model\": [{\"uuid\": \"\xff\"}]}"));

TEST(Record, WhatIsSetIsWrittenBackAndANullCountsAsAbsent) {
  const auto roundTrip = [](const char* text) {
    return nlohmann::json::parse(encode(*decode<AppCommunication>(text)));
  };
  EXPECT_EQ(roundTrip(R"({"model": null, "blockedEvents": [{"name": "login"}, {}],
                          "configuration": {"id": null, "stopAllEvents": true}})"),
            (nlohmann::json{{"configuration", {{"stopAllEvents", true}}},
                            {"blockedEvents", {{{"name", "login"}}, nlohmann::json::object()}}}));
  constexpr auto whole = R"({
    "model": [{}, {
      "type": "SCORE", "uuid": "u", "expireDate": 1.5, "maxShowCount": -3, "sliderSupport": true,
      "header": {"text": "t", "color": "#fff"}, "action": {"link": "l", "type": "url"},
      "buttons": [{"id": "b", "action": {"link": "x"}, "show": false}], "images": [{"url": "i"}, {}],
      "selection": {"value": 5, "selectedOperator": "LESS_THAN_EQUAL_TO"},
      "interval": {"fromValue": 1, "toValue": 2}, "defaultFreeText": {"questionText": "why"},
      "coupon": {"code": {"text": "A", "color": "0", "backgroundColor": "1"},
                 "button": {"active": {"text": "c", "color": "0", "backgroundColor": "1", "size": "9"},
                            "inactive": {"text": "d", "color": "0", "backgroundColor": "1"}},
                 "border": {"color": "2", "thickness": "3"}}}],
    "configuration": {"stopAllEvents": false, "offlineQueueSize": 7}})";
  EXPECT_EQ(roundTrip(whole), nlohmann::json::parse(whole));
}

}  // namespace
}  // namespace kifo
