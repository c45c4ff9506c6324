#include "testing/simulation/Server.h"

#include <array>

namespace kifo::testing::simulation {
namespace {

/// Dates of the year 2100 in seconds and milliseconds, and of 2001.
constexpr auto kCampaigns = R"("model":[
{"type":"POPUP","uuid":"P-NEVER-ENDS","maxShowCount":2,"triggeringEventName":"buy",
 "buttons":[{"id":"b","text":"B"}]},
{"type":"POPUP","uuid":"P-IN-SECONDS","maxShowCount":3,"triggeringEventName":"look",
 "expireDate":4102444800,"buttons":[{"id":"b","text":"B"}]},
{"type":"SURVEY","uuid":"S-IN-MILLISECONDS","maxShowCount":1,"triggeringEventName":"look",
 "expireDate":4102444800000,"choices":[{"id":"1","text":"1"},{"id":"2","text":"2"}]},
{"type":"SCORE","uuid":"C-SCORE","maxShowCount":2,"triggeringEventName":"noise",
 "minScore":0,"maxScore":5},
{"type":"POPUP","uuid":"P-EXPIRED","maxShowCount":9,"triggeringEventName":"buy",
 "expireDate":1000000000,"buttons":[{"id":"b","text":"B"}]},
{"type":"POPUP","uuid":"P-SPENT","maxShowCount":0,"triggeringEventName":"buy",
 "buttons":[{"id":"b","text":"B"}]}])";

HttpAnswer answered(int status, std::string body) {
  return {{}, status, std::move(body)};
}

HttpAnswer failed(int code, const char* message) {
  return {Error{"http", code, message}, 0, {}};
}

}  // namespace

std::string inAppAnswer(std::uint32_t which) {
  constexpr std::array caps{",\"offlineQueueSize\":50", ",\"offlineQueueSize\":5",
                            ",\"offlineQueueSize\":2",  ",\"offlineQueueSize\":1",
                            ",\"offlineQueueSize\":0",  ""};
  std::string answer = "{\"configuration\":{\"stopAllEvents\":";
  answer.append(which % 7 == 6 ? "true" : "false").append(caps[which % caps.size()]).append("}");
  if (which / 8 % 2 == 1) answer.append(",\"blockedEvents\":[{\"name\":\"noise\"}]");
  if (which / 16 % 4 != 3) answer.append(",").append(kCampaigns);
  return answer.append("}");
}

Fate fate(std::uint32_t number, const std::string& body) {
  switch (number % 16) {
    case 0:
      return {answered(200, ""), true};
    case 1:
      return {answered(200, "{\"code\":"), true};
    case 2:
    case 3:
      return {answered(500, "{}"), false};
    case 4:
      return {answered(401, "{}"), false};
    case 5:
      return {answered(404, ""), false};
    case 6:
      return {failed(7, "Couldn't connect to server"), false};
    case 7:
      return {failed(28, "Timeout was reached"), true};
    default:
      return {answered(200, body), true};
  }
}

}  // namespace kifo::testing::simulation
