#include "Kifo_iOS_Common_Kit/core/runtime/Watching.h"

#include <cstdlib>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

/// A host without an inspector, into which a tool looks.
class WatchingTest : public SdkTest {
 protected:
  WatchingTest() {
    testing::installWith(fake, [&](auto& platform) { platform.inspector = nullptr; });
  }

  void follow() {
    Kifo::enableWatching();
    fake.watch->source().followed(true);
  }

  /// The kinds that were published since the last call.
  std::vector<std::string> kinds() {
    std::vector<std::string> kinds;
    for (const auto& line : fake.watch->take())
      kinds.push_back(*(*valueFromJson(line))["kind"].asText());
    return kinds;
  }

  Value state() {
    std::string answer;
    fake.watch->source().state([&](std::string line) { answer = std::move(line); });
    fake.runUntilIdle();
    return valueFromJson(answer).value_or(Value());
  }
};

TEST_F(WatchingTest, NothingIsPublishedUntilAToolFollowsAndThenEachDecisionAsItHappens) {
  start();
  Kifo::enableWatching();
  KifoEventManager::sendEvent("before", std::nullopt);
  fake.runUntilIdle();
  EXPECT_THAT(fake.watch->take(), IsEmpty());
  // Without a network: the transport of this test composes a request on the caller's thread.
  setOnline(false);
  fake.watch->source().followed(true);
  KifoEventManager::sendEvent("after", std::nullopt);
  EXPECT_THAT(kinds(), ElementsAre("event", "gated", "campaign"))
      << "not composed on the caller's thread";
  fake.runUntilIdle();
  EXPECT_THAT(kinds(), ::testing::IsSupersetOf({"composed", "stored"}));
  Kifo::shutdown(0.0);
  EXPECT_FALSE(fake.watch->isOpen());
  EXPECT_FALSE(Watch::isOn);
}

TEST_F(WatchingTest, TokensAreMaskedAndAddressesLoseTheirQuery) {
  auto config = configuration();
  config.authorization = "secret-authorization";
  start(inAppAnswer, config);
  Kifo::setPushToken("secret-push");
  Kifo::setApnsToken({0xAB, 0xCD});
  follow();
  KifoEventManager::sendEvent("paid", std::nullopt,
                              {{"accessToken", "secret-own"}, {"token_provider", "mine"}});
  fake.runUntilIdle();
  const auto lines = fake.watch->take();
  for (const auto& line : lines) {
    EXPECT_THAT(line, Not(HasSubstr("secret")));
    EXPECT_THAT(line, Not(HasSubstr("abcd")));
    EXPECT_THAT(line, Not(HasSubstr("?")));
  }
  EXPECT_THAT(lines,
              Contains(AllOf(HasSubstr(R"("kind":"composed")"), HasSubstr(R"("push_token":"***")"),
                             HasSubstr(R"("accessToken":"***")"),
                             HasSubstr(R"("token_provider":"mine")"))));
}

TEST_F(WatchingTest, AnInspectorOfTheHostAndAToolBothHearOfADecision) {
  Platform platform = fake.platform();
  Platform::install(std::move(platform));
  start();
  follow();
  KifoEventManager::sendEvent("both", std::nullopt);
  EXPECT_THAT(kinds(), Contains("composed")) << "an inspector has it composed at once";
  EXPECT_EQ(fake.inspector->ofKind("composed").back().particulars.front().second, "both");
}

TEST_F(WatchingTest, TheStateTellsTheCountersTheRowsAndWhyEachCampaignWouldShowOrNot) {
  start(R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":100},"model":[
    {"uuid":"fine","type":"POPUP","maxShowCount":1,"triggeringEventName":"paid"},
    {"uuid":"spent","type":"POPUP","maxShowCount":3},
    {"uuid":"late","type":"POPUP","maxShowCount":1,"expireDate":1},
    {"uuid":"odd","type":"BANNER","maxShowCount":1},
    {"type":"POPUP"}]})");
  fake.userDefaults->setValue("spent", std::int64_t{0});
  // Before anybody attaches.
  KifoEventManager::sendEvent(nullptr, "paid", std::nullopt);
  fake.runUntilIdle();
  setOnline(false);
  Kifo::enableWatching();
  KifoEventManager::sendEvent("kept", std::nullopt);
  const Value shown = state();
  std::vector<std::string> verdicts;
  for (const auto& each : *shown["campaigns"].asList())
    verdicts.push_back(*each["verdict"].asText());
  EXPECT_THAT(verdicts, ElementsAre("waits for its event", "no shows are left", "it has expired",
                                    "its type is no popup's", "it has no uuid or no show count"));
  EXPECT_EQ(shown["campaigns"][0]["last"],
            "refused: controller is nil, couldn't call handlePopupAction");
  EXPECT_EQ(shown["network"], "offline");
  EXPECT_EQ(shown["counters"]["waiting"], 1);
  ASSERT_EQ(shown["rows"].asList()->size(), 1u);
  EXPECT_EQ(shown["rows"][0]["event"], "kept");
  EXPECT_EQ(shown["rows"][0]["tries"], 0);
}

TEST_F(WatchingTest, TheEnvironmentAsksForItAndARefusalIsSaid) {
  setenv("KIFO_WATCH", "1", 1);
  fake.watch->refuse("no directory");
  start();
  unsetenv("KIFO_WATCH");
  EXPECT_EQ(fake.console->count("Kifo Kifo: \"kifo watch\" is not possible: no directory"), 1u);
  fake.watch->refuse("");
  Kifo::enableWatching();
  EXPECT_EQ(fake.console->count("Kifo Kifo: \"kifo watch\" can look into this process"), 1u);
  EXPECT_THAT(fake.watch->source().greeting(), HasSubstr(R"("kind":"host")"));
}

}  // namespace
}  // namespace kifo
