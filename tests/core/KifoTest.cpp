#include "Kifo_iOS_Common_Kit/core/Kifo.h"

#include <future>

#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

class KifoTest : public SdkTest {
 protected:
  /// The facade's own lines, without their tag, since the last call.
  Lines said() {
    Lines own;
    for (const auto& line : fake.console->take()) {
      constexpr std::string_view tag = "Kifo Kifo: ";
      if (line.starts_with(tag)) own.push_back(line.substr(tag.size()));
    }
    return own;
  }
  std::string storedActor() const { return fake.userDefaults->string("kifo_actorId").value_or(""); }
};

TEST_F(KifoTest, AnInstallationGoesThroughEveryStepInOrder) {
  start();
  EXPECT_EQ(
      said(),
      (Lines{
          "Kifo is being initialized",
          "Local actor id is empty. If Configuration id is empty, a new Actor id will be created",
          "actorId is being updated", "Prefactor is not equal new actor id",
          "KifoNetworkStatus: ONLINE"}));
  EXPECT_EQ(Kifo::getInitializeStatusType(), InitializeStatusType::INITIALIZED);
  EXPECT_EQ(storedActor(), "actor");
  EXPECT_EQ(eventNames(), (Lines{"install", "sdk_initialize"}))
      << "the change of actor came before the first answer and was gated";
  EXPECT_TRUE(fake.http->requests()[0].url.starts_with(
      "http://api.test/inapp?actor-id=actor&application-name=Shop"));
  Kifo::initialize(configuration());
  EXPECT_EQ(said(), Lines{"already initialized!"});
}

TEST_F(KifoTest, TheHostHearsOfSuccessBeforeTheStartUpEventsGoOut) {
  inAppAnswer = "{}";
  answerWith(200);
  Lines seen;
  Kifo::initialize(configuration(), [&] {
    seen = eventNames();
    seen.push_back("success");
    throw 1;
  });
  fake.runUntilIdle();
  EXPECT_EQ(seen, Lines{"success"});
  EXPECT_EQ(eventNames(), (Lines{"install", "sdk_initialize"}));
}

TEST_F(KifoTest, AnAnswerThatDoesNotDecodeFailsTheStart) {
  bool succeeded = false;
  inAppAnswer = R"({"configuration":{}})";
  answerWith(200);
  Kifo::initialize(configuration(), [&] { succeeded = true; });
  fake.runUntilIdle();
  EXPECT_EQ(Kifo::getInitializeStatusType(), InitializeStatusType::INITIALIZE_FAILED);
  EXPECT_FALSE(succeeded);
  EXPECT_TRUE(eventNames().empty());
}

TEST_F(KifoTest, WithoutAuthorizationOrBundleNothingIsSetUp) {
  auto config = configuration();
  config.authorization.reset();
  Kifo::initialize(config);
  EXPECT_EQ(Kifo::getInitializeStatusType(), InitializeStatusType::INITIALIZE_FAILED);
  config = configuration();
  config.bundle = {};
  Kifo::initialize(config);
  EXPECT_EQ(Kifo::getInitializeStatusType(), InitializeStatusType::INITIALIZE_FAILED);
  fake.runUntilIdle();
  EXPECT_EQ(fake.http->count(), 0U);
  EXPECT_EQ(storedActor(), "");
  EXPECT_FALSE(Kifo::isStarted());
}

TEST_F(KifoTest, ATokenServiceThatHasNoTokenFailsTheStatusAndTheStartGoesOn) {
  auto config = configuration();
  config.authorization.reset();
  config.tokenService =
      std::make_shared<ScriptedTokens>([](const auto& answer) { answer(std::nullopt); });
  Kifo::initialize(config);
  EXPECT_EQ(Kifo::getInitializeStatusType(), InitializeStatusType::INITIALIZE_FAILED);
  EXPECT_TRUE(Kifo::isStarted());
  EXPECT_EQ(storedActor(), "actor");
}

TEST_F(KifoTest, AWaitForATokenEndsWithItsServicesTimeOutItsAnswerOrTheShutdown) {
  const auto patient = Runtime::current();
  std::promise<void> begun;
  patient->session.setTokenService(
      std::make_shared<ScriptedTokens>([&](const auto&) { begun.set_value(); }, 20.0));
  const auto wait = std::async(std::launch::async, [&] { TokenFetch::run(patient); });
  begun.get_future().wait();
  const auto other = std::make_shared<Runtime>();
  for (const auto& service :
       {std::make_shared<ScriptedTokens>(), std::make_shared<ScriptedTokens>(),
        std::make_shared<ScriptedTokens>([](const auto& answer) { answer("token"); }, 30.0)}) {
    other->session.setTokenService(service);
    TokenFetch::run(other);
  }
  EXPECT_EQ(wait.wait_for(std::chrono::seconds(0)), std::future_status::timeout)
      << "the wait that began first ends last";
  Kifo::shutdown(0.0);
  EXPECT_EQ(wait.wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

struct ActorCase {
  const char* stored;
  std::optional<std::string> configured;
  std::string chosen;  ///< Empty: a new identifier.
  bool isInstall;
};

class ActorChoice : public KifoTest, public ::testing::WithParamInterface<ActorCase> {};

TEST_P(ActorChoice, TakesTheHostsElseTheStoredElseANewOne) {
  const ActorCase& c = GetParam();
  if (c.stored) fake.userDefaults->setValue("kifo_actorId", std::string(c.stored));
  auto config = configuration();
  config.actorId = c.configured;
  start("{}", config);
  EXPECT_EQ(Kifo::isInstall(), c.isInstall);
  EXPECT_EQ(storedActor(), Kifo::actorId());
  const std::string sentActor = Session::withoutCommas(Kifo::actorId());
  EXPECT_TRUE(fake.http->requests().at(0).url.starts_with(
      "http://api.test/inapp?actor-id=" + sentActor + "&"));
  EXPECT_EQ(lastEvent("sdk_initialize")["actorId"], sentActor);
  if (c.chosen.empty()) {
    EXPECT_EQ(Kifo::actorId().size(), 36U);
    EXPECT_EQ(lastEvent("install")["anonymous"], true);
  } else {
    EXPECT_EQ(Kifo::actorId(), c.chosen);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Kifo, ActorChoice,
    ::testing::Values(ActorCase{"A", "B", "B", false}, ActorCase{"A", "B,1", "B,1", false},
                      ActorCase{"A", "", "A", false}, ActorCase{"A", std::nullopt, "A", false},
                      ActorCase{"", "B", "B", true}, ActorCase{nullptr, "B", "B", true},
                      ActorCase{nullptr, "", "", true}));

TEST_F(KifoTest, TheShortFormSaysWhereTheActorCameFromAndLeavesTheRestAlone) {
  const auto initialize = [this](const std::optional<std::string>& actor) {
    Kifo::initialize("http://api.test/inapp", "http://listener.test/events", "t", "origin", actor,
                     "Shop", false);
    fake.runUntilIdle();
  };
  answerNothing();
  initialize(std::nullopt);
  EXPECT_EQ(said()[1], "Prefactor id count <= 0");
  EXPECT_EQ(Kifo::getInitializeStatusType(), InitializeStatusType::NOT_INITIALIZED);
  initialize("");
  EXPECT_EQ(said(), (Lines{"Kifo is being initialized", "Prefactor id count > 0",
                           "actorId is being updated", "Prefactor is equal new actor id",
                           "KifoNetworkStatus: ONLINE"}));
  initialize("B");
  EXPECT_EQ(said()[1], "actorId is available and id.count > 0");
  EXPECT_FALSE(Kifo::isInstall() || Kifo::isStarted());
  for (const auto index : fake.http->open()) fake.http->answer(index, 200, "{}");
  fake.runUntilIdle();
  EXPECT_TRUE(Kifo::isInitialized());
  EXPECT_TRUE(eventNames().empty()) << "no start-up events";
}

TEST_F(KifoTest, TokensAreReportedOnceBothAreThereAndOnlyWhenTheyChange) {
  Kifo::setPushToken("push");
  start();
  EXPECT_EQ(fake.userDefaults->string("PUSH_TOKEN"), std::nullopt) << "one is not enough";
  Kifo::setApnsToken({0x0A, 0xFF});
  fake.runUntilIdle();
  EXPECT_EQ(Kifo::apnsToken(), "0aff");
  EXPECT_EQ(std::ranges::count(eventNames(), "push_token_change"), 2);
  EXPECT_EQ(fake.userDefaults->string("APNS_TOKEN"), "0aff");
  EXPECT_EQ(fake.userDefaults->string("PUSH_TOKEN"), "push");
  Kifo::setPushToken("push");
  Kifo::setPushToken("other");
  fake.runUntilIdle();
  EXPECT_EQ(std::ranges::count(eventNames(), "push_token_change"), 3);
  EXPECT_EQ(lastEvent("push_token_change")["token_provider"], "firebase");
  Runtime::detach();
  Kifo::setPushToken("set early");
  Kifo::setApnsToken({1});
  EXPECT_EQ(fake.userDefaults->string("PUSH_TOKEN"), "other") << "not before the start";
  start();
  EXPECT_EQ(fake.userDefaults->string("PUSH_TOKEN"), "set early");
}

TEST_F(KifoTest, AnEmptyAuthorizationTokenIsRefused) {
  start();
  said();
  Kifo::setAuthorizationToken("");
  EXPECT_EQ(Kifo::authorization(), "token");
  Kifo::setAuthorizationToken("next");
  EXPECT_EQ(Kifo::authorization(), "next");
  EXPECT_EQ(said(),
            (Lines{"Authorization token cannot be empty", "Authorization token set complete"}));
}

TEST_F(KifoTest, AStoredTimeOutCountsWhenItIsAboveZero) {
  for (const auto& [stored, expected] :
       std::vector<std::pair<DefaultsValue, double>>{{0.0, 5000.0},
                                                     {-3.0, 5000.0},
                                                     {std::string("x"), 5000.0},
                                                     {0.5, 0.5},
                                                     {std::string("2.5"), 2.5}}) {
    fake.userDefaults->setValue("kifo_timeout", stored);
    auto config = configuration();
    config.forceInitialize = true;
    start("{}", config);
    EXPECT_EQ(Kifo::requestTimeout(), expected);
  }
}

TEST_F(KifoTest, TheApplicationsHooksSpeakAndObeyTheirSwitch) {
  start();
  said();
  Kifo::didFinishLaunchingWithOptions();
  Kifo::applicationDidReceiveRemoteNotification({});
  Kifo::setSendApplicationLifeCycleEventStatus(SendLifeCycleEventStatus::DISABLED);
  Kifo::applicationDidBecomeActive();
  Kifo::applicationWillResignActive();
  fake.runUntilIdle();
  EXPECT_TRUE(lastEvent("app_background").is_null());
  Kifo::setSendApplicationLifeCycleEventStatus(SendLifeCycleEventStatus::ENABLED);
  Kifo::applicationWillResignActive();
  fake.runUntilIdle();
  EXPECT_FALSE(lastEvent("app_background").is_null());
  EXPECT_EQ(said(),
            (Lines{"didFinishLaunchingWithOptions", "applicationDidReceiveRemoteNotification",
                   "applicationDidBecomeActive", "send application lifecycle events disabled!",
                   "applicationWillResignActive", "send application lifecycle events disabled!",
                   "applicationWillResignActive"}));
}

TEST_F(KifoTest, AnAddressThatIsNoUrlEndsTheProcessWhereNothingElseCanBeDone) {
  auto config = configuration();
  config.apiUri = "not a url";
  EXPECT_DEATH(Kifo::initialize(config), "Fatal error: the server's address is no URL: not a url");
}

TEST_F(KifoTest, ForcedItInitialisesAgainWithTheNewSwitchesAndKeepsOneWatcher) {
  start();
  auto config = configuration();
  config.forceInitialize = true;
  config.isWifiStatusRequired = config.isDiskCapacityRequired = true;
  config.isBatteryStatusRequired = config.isLocationRequired = true;
  config.offlineCachingDisabled = true;
  config.sendApplicationLifeCycleEventEnabled = SendLifeCycleEventStatus::DISABLED;
  config.sendActivityLifeCycleEventStatus = SendLifeCycleEventStatus::DISABLED;
  start("{}", config);
  EXPECT_TRUE(Kifo::isWifiStatusRequired());
  EXPECT_TRUE(Kifo::isDiskCapacityRequired());
  EXPECT_TRUE(Kifo::isBatteryStatusRequired());
  EXPECT_TRUE(Kifo::isLocationRequired());
  EXPECT_TRUE(Kifo::offlineCachingDisabled());
  EXPECT_EQ(Kifo::sendApplicationLifeCycleEventStatus(), SendLifeCycleEventStatus::DISABLED);
  EXPECT_EQ(Kifo::sendActivityLifeCycleEventStatus(), SendLifeCycleEventStatus::DISABLED);
  EXPECT_EQ(std::ranges::count(eventNames(), "install"), 1) << "it is installed already";
  EXPECT_EQ(fake.reachability->listening(), 1U);
  fake.console->clear();
  fake.reachability->change(0);
  fake.reachabilityQueue->sync([] {});
  EXPECT_EQ(Kifo::networkStatus(), KifoNetworkStatus::OFFLINE) << "whatever the main queue does";
  fake.runUntilIdle();
  EXPECT_EQ(said(), Lines{"KifoNetworkStatus: OFFLINE"});
  setOnline(true);
  EXPECT_EQ(fake.http->networkChanges(), 1) << "connections of before the loss lead nowhere";
}

TEST_F(KifoTest, ANetworkThatNobodyCanWatchCountsAsThere) {
  fake.reachability->failCreate(1);
  start();
  EXPECT_EQ(Kifo::networkStatus(), KifoNetworkStatus::ONLINE);
  EXPECT_EQ(eventNames(), (Lines{"install", "sdk_initialize"}));
}

TEST_F(KifoTest, SessionValuesMayBeReadAndWrittenFromAnyThread) {
  start();
  testing::onThreads(3, [](int number) {
    for (int i = 0; i < 50; ++i) {
      Kifo::updateActorId(std::to_string(number));
      Kifo::setSendEventStatus(i % 2 ? SendEventStatus::ENABLED : SendEventStatus::DISABLED);
      Kifo::setPushToken(Kifo::actorId() + Kifo::apiUri());
      KifoEventManager::sendEvent("tap", std::nullopt);
    }
  });
  fake.runUntilIdle();
  EXPECT_EQ(std::ranges::count(eventNames(), "tap"), 150);
}

TEST_F(KifoTest, WritesThatNeverRanKeepNothingOfTheSessionAlive) {
  start();
  auto runtime = Runtime::current();
  const auto store = runtime->store();
  const auto write = [&](std::shared_ptr<Runtime> held) {
    store->write({.statement = "delete from KifoLog", .done = [held](const auto&) {}});
  };
  write(runtime);
  fake.mainQueue->discard();
  Kifo::shutdown(0.0);
  write(runtime);  // of an answer that comes late
  const std::weak_ptr<Runtime> life = runtime;
  runtime.reset();
  EXPECT_TRUE(life.expired());
}

}  // namespace
}  // namespace kifo
