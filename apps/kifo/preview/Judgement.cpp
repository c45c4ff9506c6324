#include "apps/kifo/preview/Judgement.h"

#include <map>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"
#include "testing/FakePlatform.h"

namespace kifo::tool {
namespace {

constexpr auto kEvent = "preview";
constexpr double kPopupDelay = 5.0;  // Seconds, more than the SDK waits before it shows a popup.

class Screen final : public ViewController {
 public:
  [[nodiscard]] std::string className() const override { return "Preview"; }
};

/// The server's answer with this campaign alone, shown by `kEvent`.
std::string answerWith(AppCommunicationItem campaign) {
  campaign.triggeringEventName = kEvent;
  AppCommunication answer;
  answer.model.emplace({std::make_shared<AppCommunicationItem>(std::move(campaign))});
  return encode(answer);
}

/// Runs one session of the SDK in which the server has this campaign and its event is sent.
void run(const testing::FakePlatform& fake, const AppCommunicationItem& campaign) {
  fake.reachability->setFlags(ReachabilityFlags::reachable);
  fake.http->setHandler([answer = answerWith(campaign)](const HttpRequest&) {
    return HttpAnswer{{}, 200, answer};
  });
  KifoInitConfig configuration;
  configuration.bundle = {"kifo.preview"};
  configuration.apiUri = configuration.listenerUri = "http://127.0.0.1/";
  configuration.authorization = "preview";
  Kifo::initialize(configuration);
  fake.runUntilIdle();
  const auto screen = std::make_shared<Screen>();
  KifoEventManager::sendEvent(screen, kEvent, std::nullopt);
  fake.runUntilIdle();
  fake.advance(kPopupDelay);
  Kifo::shutdown(/*bound=*/0.0);  // Nothing of the session is kept.
}

std::string numberOr(const std::optional<std::int64_t>& number) {
  return number ? std::to_string(*number) : "missing";
}

/// The SDK's reason, with what a campaign's author needs to know where the reason does not say it.
std::string explained(const std::string& reason, const AppCommunicationItem& item) {
  if (reason == "uuid or maxShowCount couldn't be assigned") {
    return reason + ": it has no " + (item.uuid ? "\"maxShowCount\"" : "\"uuid\"");
  }
  if (reason == "Maximumscore or Minimumscore are not validation") {
    return reason + ": its scores go from " + numberOr(item.minScore) + " to " +
           numberOr(item.maxScore) +
           "; the lowest is at least 0 and below the highest, which is 1 to 100000";
  }
  if (reason == "couldn't get a actionType for popup") {
    return reason + ": its type " + (item.type ? "\"" + *item.type + "\" is none" : "is missing;") +
           " of POPUP, SURVEY, EMOJI, SCORE and OPEN_ENDED";
  }
  return reason;
}

}  // namespace

Judgement judge(const AppCommunicationItem& campaign) {
  const Platform before = *Platform::current();
  const testing::FakePlatform fake;
  Platform platform = fake.platform();
  platform.clock = before.clock;
  Platform::install(std::move(platform));
  run(fake, campaign);
  Platform::install(before);

  Judgement judgement;
  for (const auto& decision : fake.inspector->ofKind("campaign")) {
    std::map<std::string, std::string> told(decision.particulars.begin(),
                                            decision.particulars.end());
    if (told["outcome"] == "expired") judgement.reason = "its \"expireDate\" has passed";
    if (told["outcome"] == "refused") judgement.reason = explained(told["reason"], campaign);
    if (told["outcome"] == "clamped") {
      judgement.notes.push_back("it offers more than is shown: " + told["reason"]);
    }
  }
  if (!campaign.triggeringEventName) {
    judgement.notes.emplace_back("no event shows it: it has no \"triggeringEventName\"");
  }
  const auto requests = fake.popups->take();
  if (!requests.empty()) judgement.request = requests.front();
  return judgement;
}

}  // namespace kifo::tool
