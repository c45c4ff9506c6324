#include "Kifo_iOS_Common_Kit/core/runtime/Consent.h"

#include <filesystem>
#include <set>

#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

constexpr auto kAnswer = R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":100},
  "model":[{"uuid":"u1","type":"POPUP","maxShowCount":3,"triggeringEventName":"tap","buttons":[]}]})";

class ConsentTest : public SdkTest {
 protected:
  static KifoInitConfig requiring() {
    auto config = configuration();
    config.requiresConsent = true;
    config.actorId.reset();
    return config;
  }

  void begin(const KifoInitConfig& config = requiring()) {
    inAppAnswer = kAnswer;
    answerWith(200);
    Kifo::initialize(config);
    fake.runUntilIdle();
  }
  /// A host at work: a stored row, an actor, tokens, a spent show.
  void work() {
    Kifo::giveConsent();
    begin();
    Kifo::setPushToken("push");
    Kifo::setApnsToken({1, 2});
    fake.userDefaults->setValue("u1", std::int64_t{2});
    setOnline(false);
    KifoEventManager::sendEvent("kept", std::nullopt);
    setOnline(true);
  }
  void callEverything() {
    KifoEventManager::sendEvent("tap", std::nullopt, {{"a", 1}});
    KifoEventManager::sendEvent(screen_, "tap", std::nullopt);
    KifoEventManager::sendPageInEvent(screen_, std::nullopt);
    Kifo::updateActorId("someone");
    Kifo::setPushToken("push");
    Kifo::setApnsToken({1, 2});
    Kifo::setAuthorizationToken("token");
    Kifo::applicationDidBecomeActive();
    NotificationManager::refreshNotificationPermissionStatusType();
    const auto push = std::make_shared<NotificationContent>();
    push->userInfo = {{"image", "https://images.test/a.png"}, {"data", "{}"}};
    NotificationManager::didReceive({"push", push}, [](const auto&) {});
    fake.advance(1.0);
  }
  void expectNothingKept(const Names& files) const {
    Names found;
    for (const auto& entry : fs::recursive_directory_iterator(fake.directory.path())) {
      found.insert(entry.path().filename());
    }
    EXPECT_EQ(found, files);
    EXPECT_THAT(fake.userDefaults->values(), IsEmpty());
    EXPECT_THAT(fake.http->open(), IsEmpty());
    EXPECT_EQ(fake.reachability->sources(), 0U);
  }
  /// Nothing is kept, and nothing goes out or comes back whatever the host calls.
  void expectRevoked() {
    fake.runUntilIdle();
    const auto sent = fake.http->count();
    const auto issued = fake.identifiers->issued();
    callEverything();
    EXPECT_EQ(fake.http->count(), sent);
    EXPECT_EQ(fake.identifiers->issued(), issued);
    EXPECT_EQ(Kifo::consent(), ConsentStatus::REFUSED);
    EXPECT_EQ(Kifo::actorId(), "");
    expectNothingKept({"consent.refused"});
  }

  const std::shared_ptr<HomeScreen> screen_ = std::make_shared<HomeScreen>();
};

TEST_F(ConsentTest, UntilItIsGivenNothingIsSentWrittenReadOrWatched) {
  begin();
  EXPECT_EQ(Kifo::consent(), ConsentStatus::UNKNOWN);
  EXPECT_EQ(Kifo::getInitializeStatusType(), InitializeStatusType::NOT_INITIALIZED);
  fake.inspector->clear();
  callEverything();
  EXPECT_EQ(fake.http->count(), 0U);
  EXPECT_EQ(fake.identifiers->issued(), 0U);
  EXPECT_THAT(fake.reachability->addresses(), IsEmpty());
  expectNothingKept({});
  std::vector<std::string> dropped;
  for (const auto& decision : fake.inspector->decisions()) {
    EXPECT_EQ(decision.kind, "dropped");
    for (const auto& [key, value] : decision.particulars) {
      if (key != "reason") dropped.push_back(value);
    }
  }
  EXPECT_THAT(dropped,
              ElementsAre("tap", "tap", "page_in", "updateActorId", "setPushToken", "setApnsToken",
                          "setAuthorizationToken", "app_foreground",
                          "refreshNotificationPermissionStatusType", "push_notification_received"));
  const Counts counts = Kifo::statistics().sinceInitialize;
  EXPECT_EQ(counts[Counter::composed], 5);
  EXPECT_EQ(counts[Counter::droppedWithoutConsent], 5);
}

TEST_F(ConsentTest, GivenInitialisationGoesOnAndTheNextProcessNeedNotAsk) {
  bool succeeded = false;
  inAppAnswer = kAnswer;
  answerWith(200);
  Kifo::initialize(requiring(), [&] { succeeded = true; });
  callEverything();
  Kifo::giveConsent();
  fake.runUntilIdle();
  EXPECT_TRUE(succeeded);
  EXPECT_EQ(Kifo::consent(), ConsentStatus::GIVEN);
  EXPECT_EQ(eventNames(), (std::vector<std::string>{"install", "sdk_initialize"}))
      << "what was dropped stays dropped";
  EXPECT_EQ(Kifo::pushToken(), "");
  Kifo::giveConsent();
  fake.runUntilIdle();
  EXPECT_EQ(eventNames().size(), 2U) << "given already";
  restartProcess();
  begin();
  EXPECT_TRUE(Kifo::isInitialized());
}

TEST_F(ConsentTest, RevokedWheneverAndTwiceItErasesAllThatWasKeptAndGivenAgainItBeginsAnew) {
  Kifo::revokeConsent();
  begin();
  expectRevoked();
  work();
  restartProcess();
  Kifo::revokeConsent();
  expectRevoked();
  work();
  const std::string actor = Kifo::actorId();
  Kifo::revokeConsent();
  Kifo::revokeConsent();
  expectRevoked();
  EXPECT_EQ(Kifo::statistics().sinceInitialize[Counter::delivered], 0);
  Kifo::giveConsent();
  fake.runUntilIdle();
  EXPECT_TRUE(Kifo::isInitialized());
  EXPECT_EQ(eventNames().back(), "sdk_initialize");
  EXPECT_NE(Kifo::actorId(), actor) << "nothing of the user before is known";
  EXPECT_NE(Kifo::actorId(), "");
}

TEST_F(ConsentTest, RevokedDuringTheWaitForATokenTheStartEndsThere) {
  auto config = requiring();
  config.authorization.reset();
  config.tokenService =
      std::make_shared<ScriptedTokens>([](const auto&) { Kifo::revokeConsent(); }, 3600.0);
  Kifo::giveConsent();
  begin(config);
  expectRevoked();
  EXPECT_EQ(fake.http->count(), 0U);
}

TEST_F(ConsentTest, RevokedWhileAPopupWaitsItIsNeverShownAndAnOpenOnesAnswerIsDropped) {
  work();
  const auto trigger = [&](double seconds) {
    KifoEventManager::sendEvent(screen_, "tap", std::nullopt);
    fake.runUntilIdle();
    fake.advance(seconds);
  };
  trigger(0.5);
  fake.popups->hold();
  trigger(0.5);
  trigger(0.1);
  ASSERT_EQ(fake.popups->requests().size(), 1U);
  Kifo::revokeConsent();
  fake.advance(0.5);
  Kifo::giveConsent();
  fake.runUntilIdle();
  fake.popups->release();
  EXPECT_EQ(fake.popups->requests().size(), 1U) << "they belong to what was erased";
  Kifo::revokeConsent();
  fake.popups->requests().front()->actionItem(nullptr);
  expectRevoked();
}

TEST_F(ConsentTest, AnInterruptedErasingIsFinishedBeforeAnythingElse) {
  for (const auto& [isRequired, isStoreGone] :
       {std::pair(true, false), std::pair(false, true), std::pair(true, true)}) {
    work();
    Kifo::revokeConsent();
    restartProcess();
    EXPECT_FALSE(fake.userDefaults->values().empty()) << "killed before it began";
    if (isStoreGone) fs::remove(databasePath());  // or after its first step
    auto config = requiring();
    config.requiresConsent = isRequired;
    config.actorId = "second";
    std::string atFirstRequest;
    fake.http->setHandler([&](const HttpRequest&) {
      atFirstRequest = fake.userDefaults->string("PUSH_TOKEN").value_or("none");
      return std::optional<HttpAnswer>();
    });
    Kifo::initialize(config);
    fake.runUntilIdle();
    EXPECT_EQ(atFirstRequest, isRequired ? "" : "none");
    EXPECT_EQ(Kifo::actorId(), isRequired ? "" : "second")
        << "none is asked where none is required";
    EXPECT_EQ(Kifo::consent(), ConsentStatus::REFUSED) << "it is remembered all the same";
    fake.http->setHandler([](const HttpRequest&) { return std::optional<HttpAnswer>(); });
    Kifo::revokeConsent();
    expectRevoked();
  }
}

TEST_F(ConsentTest, RevokedFromManyThreadsBesideSendersNothingIsLeft) {
  for (int round = 0; round < 8; ++round) {
    work();
    testing::onThreads(4, [](int thread) {
      if (thread % 2 == 1) return Kifo::revokeConsent();
      for (int number = 0; number < 50; ++number) {
        KifoEventManager::sendEvent("tap", std::nullopt);
        Kifo::updateActorId(std::to_string(number));
      }
    });
    expectRevoked();
  }
}

TEST_F(ConsentTest, ARequestThatIsMadeAfterTheRevokingLeadsNowhere) {
  work();
  const auto late = std::make_shared<LateTransport>();
  testing::installWith(fake, [&](auto& platform) { platform.http = late; });
  KifoEventManager::sendEvent("tap", std::nullopt);
  ASSERT_EQ(late->kept.size(), 1U);
  Kifo::revokeConsent();
  const HttpRequest request = late->kept.front()();
  EXPECT_EQ(request.url, "");
  EXPECT_EQ(request.body, std::nullopt);
  EXPECT_THAT(request.headers, IsEmpty());
  EXPECT_EQ(withConsent({.url = "http://pictures/a.png"}).url, "") << "nor does a picture's";
  late->stop();
}

}  // namespace
}  // namespace kifo
