#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/network/InFlightRequests.h"
#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"
#include "tests/support/ForeignLock.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

constexpr auto kCounted = R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":3}})";

class ServiceClientTest : public SdkTest {
 protected:
  void send(const std::string& name, EventParameters parameters = {}) {
    KifoEventManager::sendEvent(name, std::nullopt, std::move(parameters));
    fake.runUntilIdle();
  }

  HttpRequest lastRequest() const { return testing::last(fake.http->requests()); }
  std::size_t lines(const std::string& message) const {
    return fake.console->count("Kifo ServiceClient: " + message);
  }
};

TEST_F(ServiceClientTest, ARequestCarriesTheFourHeadersAndItsParametersInQueryAndBody) {
  auto config = configuration();
  config.listenerUri = "http://listener.test/events?of=its-own#part";
  start("{}", config);
  answerNothing();
  send("tap", {{"b c", "ü/?&="}, {"a", 7}, {"deep", {{"x", Value::list({1, 2})}}}, {"yes", true}});
  const HttpRequest request = lastRequest();
  EXPECT_EQ(request.method, "POST");
  EXPECT_THAT(request.headers, ElementsAre(std::pair("Authorization", "BearerMOBILE token"),
                                           std::pair("Content-Type", "application/json"),
                                           std::pair("LocalOrigin", "com.example.test"),
                                           std::pair("cache-control", "no-cache")));
  EXPECT_EQ(request.timeout, 5000.0);
  EXPECT_TRUE(
      request.url.starts_with("http://listener.test/events?a=7&actorId=actor&apns_token=&"));
  EXPECT_THAT(request.url, HasSubstr("&b%20c=%C3%BC%2F%3F%26%3D&"));
  EXPECT_THAT(request.url, HasSubstr("&deep=%7B%22x%22%3A%5B1%2C2%5D%7D&"));
  EXPECT_THAT(request.url, HasSubstr("&yes=true"));
  EXPECT_TRUE(request.url.ends_with("#part"));
  EXPECT_FALSE(request.mayRepeat) << "its copy is what is sent again";
  const auto body = nlohmann::json::parse(request.body.value());
  EXPECT_EQ(body["b c"], "ü/?&=");
  EXPECT_EQ(request.body->find(' '), request.body->find(" c\"")) << "compact";
}

TEST_F(ServiceClientTest, AParameterNested100000LevelsDeepIsSentStoredAndSentAgainWhole) {
  start();
  const auto nested = valueFromJson(std::string(100'000, '[') + std::string(100'000, ']')).value();
  setOnline(false);
  send("tap", {{"nested", nested}});
  fake.runUntilIdle();
  EXPECT_EQ(rows("select count(*) from KifoLog"), std::vector<std::string>{"1"});
  setOnline(true);
  const auto sent = fake.http->events("tap");
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_TRUE(sent[0]["nested"] == nested);
}

TEST_F(ServiceClientTest, ATokenCannotBecomeAHeaderAndBrokenTextIsMendedNotLost) {
  start();
  answerNothing();
  Kifo::setAuthorizationToken("a\r\nEvil: 1");
  send("tap", {{"text", "x\xFFy"}});
  EXPECT_EQ(lastRequest().headers[0].second, "BearerMOBILE aEvil: 1");
  EXPECT_EQ(nlohmann::json::parse(lastRequest().body.value())["text"], "x\uFFFDy");
  EXPECT_THAT(lastRequest().url, HasSubstr("text=x%EF%BF%BDy"));
}

TEST_F(ServiceClientTest, OfflineAnEventIsStoredAndNotSent) {
  start(kCounted);
  EXPECT_EQ(lines("log is nil"), 0U) << "the pass that waited for the answer is quiet";
  setOnline(false);
  const auto sent = fake.http->count();
  send("tap");
  EXPECT_EQ(fake.http->count(), sent);
  EXPECT_EQ(rows("select ISSYNC, ISSYNC_SUCCESS, TRYCOUNT, HTTPMETHOD, DATE from KifoLog"),
            Lines{"1|0|0|POST|1700000000"});
  EXPECT_EQ(lines("Kifo online status is not ONLINE"), 1U);
}

TEST_F(ServiceClientTest, BeforeTheFirstAnswerOnlyTheQueryAndPushEventsGoOut) {
  answerNothing();
  Kifo::initialize(configuration());
  send("tap");
  KifoEventManager::sendPushNotificationReceivedEvent("t", "a", "c", "code", "s");
  KifoEventManager::sendPushNotificationClickedEvent("t", "a", "c", "code", "s", {}, {});
  KifoEventManager::sendPushNotificationDismissedEvent({});
  fake.runUntilIdle();
  EXPECT_EQ(eventNames(), (Lines{"push_notification_received", "push_notification_clicked",
                                 "push_notification_dismissed"}));
  EXPECT_GE(
      lines("App communication is nil or is app communication itemLog is false or Notification "
            "event is false"),
      1U);
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"0"});
}

TEST_F(ServiceClientTest, A200WithoutABodyMarksTheRowAndKeepsIt) {
  start(kCounted);
  answerWith(200, "");
  send("tap");
  EXPECT_EQ(rows("select ISSYNC_SUCCESS, TRYCOUNT from KifoLog"), Lines{"1|0"});
  EXPECT_EQ(lines("no data"), 1U);
  EXPECT_THAT(fake.console->lines(),
              Contains(StartsWith("Kifo ServiceClient: kifo_requestId:  is cached: false request "
                                  "id: 0000")))
      << "two blanks";
  setOnline(false);
  setOnline(true);
  EXPECT_EQ(std::ranges::count(eventNames(), "tap"), 1) << "it was answered";
  for (const char* name : {"one", "two"}) {
    setOnline(false);
    send(name);
  }
  setOnline(true);
  EXPECT_EQ(rows("select ISSYNC_SUCCESS, TRYCOUNT from KifoLog order by ID"),
            (Lines{"1|0", "1|1", "0|0"}))
      << "and the chain ends with it";
}

TEST_F(ServiceClientTest, TwoRefusalsInARowFailTheTokenAndA200BetweenThemDoesNot) {
  auto config = configuration();
  config.authorization.reset();
  config.tokenService = std::make_shared<ScriptedTokens>(
      [calls = 0](const auto& answer) mutable { answer("renewed " + std::to_string(++calls)); });
  start(kCounted, config);
  for (const int status : {401, 200, 401}) {
    answerWith(status);
    send("tap");
  }
  EXPECT_NE(Kifo::getInitializeStatusType(), InitializeStatusType::TOKEN_FAILED);
  EXPECT_EQ(Kifo::authorization(), "renewed 3") << "one at the start, one for each refusal";
  answerWith(401);
  send("tap");
  EXPECT_EQ(Kifo::getInitializeStatusType(), InitializeStatusType::TOKEN_FAILED);
}

// Stored rows ------------------------------------------------------------------------------------

class SyncTest : public ServiceClientTest {
 protected:
  /// Three events that wait in the store.
  void storeThree(const KifoInitConfig& config = configuration()) {
    start(kCounted, config);
    setOnline(false);
    for (const char* name : {"one", "two", "three"}) send(name);
    fake.console->clear();
  }
  Lines resent() const {
    Lines names = eventNames();
    std::erase_if(
        names, [](const auto& name) { return name != "one" && name != "two" && name != "three"; });
    return names;
  }
};

TEST_F(SyncTest, StoredRowsGoOutOneAfterAnotherInOrderUntilNoneIsLeft) {
  storeThree();
  answerNothing();
  setOnline(true);
  for (const char* next : {"one", "two", "three"}) {
    EXPECT_EQ(fake.http->open().size(), 1U) << "one at a time";
    EXPECT_EQ(testing::last(resent()), next);
    EXPECT_EQ(rows("select count(*) from KifoLog where TRYCOUNT = 1"), Lines{"1"})
        << "marked first";
    fake.http->answerNext(200, "{}");
    fake.runUntilIdle();
  }
  EXPECT_EQ(resent(), (Lines{"one", "two", "three"}));
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"0"});
  EXPECT_EQ(lines("sync is online online"), 4U);
  EXPECT_EQ(lines("log is nil"), 1U);
  EXPECT_EQ(lines("lastSyncRequestIds contains log requestId"), 3U);
  for (const Decision& sent : fake.inspector->ofKind("resent")) {
    EXPECT_FALSE(Runtime::current()->inFlight->isDelivered(sent.particulars.at(0).second))
        << "nothing is remembered of a row that is gone";
  }
}

TEST_F(SyncTest, TheFirstFailureEndsTheChainAndTheNextTriggerTakesTheNextRow) {
  storeThree();
  answerWith(500);
  setOnline(true);
  EXPECT_EQ(resent(), Lines{"one"});
  setOnline(false);
  setOnline(true);
  EXPECT_EQ(resent(), (Lines{"one", "two"}));
  answerWith(200);
  setOnline(false);
  setOnline(true);
  EXPECT_EQ(resent(), (Lines{"one", "two", "three"})) << "a row that failed is not tried again";
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"0"}) << "and goes with the next success";
}

TEST_F(SyncTest, NothingIsSentAgainWhenCachingIsDisabled) {
  auto config = configuration();
  config.offlineCachingDisabled = true;
  storeThree(config);
  setOnline(true);
  EXPECT_TRUE(resent().empty());
  EXPECT_EQ(lines("offlineCachingDisabled"), 1U);
  EXPECT_EQ(lines("sync is online online"), 0U) << "no pass begins";
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"3"});
}

/// How a request fails.
struct Failure {
  int status;  ///< 0: no answer.
  int code;    ///< curl's, where there is no answer.
};

class FailedAnswer : public SyncTest, public ::testing::WithParamInterface<Failure> {
 protected:
  void fail() {
    if (GetParam().status > 0) {
      fake.http->answerNext(GetParam().status, "{}");
    } else {
      fake.http->fail(fake.http->open().at(0), GetParam().code, "failed");
    }
    fake.runUntilIdle();
  }
};

TEST_P(FailedAnswer, KeepsTheRowForOneMoreTry) {
  start(kCounted);
  Kifo::setTokenService(std::make_shared<ScriptedTokens>());
  answerNothing();
  send("one");
  fail();
  EXPECT_EQ(rows("select ISSYNC, ISSYNC_SUCCESS, TRYCOUNT from KifoLog"), Lines{"1|0|0"});
}

TEST_P(FailedAnswer, StartsAPassThatWaitsForItOverSoThatTheRowsBehindItGoOutOnThisReturn) {
  start();
  Kifo::setTokenService(std::make_shared<ScriptedTokens>());
  answerNothing();
  send("one");
  setOnline(false);
  send("two");
  send("three");
  setOnline(true);
  EXPECT_EQ(resent(), Lines{"one"});
  answerWith(200);
  fail();
  EXPECT_EQ(resent(), (Lines{"one", "one", "two", "three"}));
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"0"});
}

INSTANTIATE_TEST_SUITE_P(Network, FailedAnswer,
                         ::testing::Values(Failure{500, 0}, Failure{503, 0}, Failure{404, 0},
                                           Failure{302, 0}, Failure{204, 0}, Failure{401, 0},
                                           Failure{0, 7}, Failure{0, 56}, Failure{0, 28},
                                           Failure{0, 42}));

class ServerAway : public SyncTest {
 protected:
  /// Two events whose requests failed; then the server is back.
  void storeTwo(bool resendsWhenServerReturns) {
    auto config = configuration();
    config.resendsWhenServerReturns = resendsWhenServerReturns;
    start(R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":100}})", config);
    answerWith(503);
    send("one");
    send("two");
    answerWith(200);
  }
};

TEST_F(ServerAway, GetsWhatWaitsAfterAFreshRequestWasAnswered) {
  storeTwo(true);
  send("three");
  EXPECT_EQ(resent(), (Lines{"one", "two", "three", "one", "two"}));
  send("three");
  EXPECT_EQ(resent().size(), 6U) << "nothing waits any more";
}

TEST_F(ServerAway, GetsWhatWaitsWhileNothingIsSent) {
  storeTwo(true);
  fake.advance(36.1);
  EXPECT_EQ(resent().size(), 2U) << "the second event was sent since the first one failed";
  fake.advance(36.1);
  EXPECT_EQ(resent(), (Lines{"one", "two", "one", "two"}));
  fake.advance(3600.0);
  EXPECT_EQ(fake.advance(3600.0), 0U) << "no timer is left";
  answerNothing();
  send("three");
  setOnline(false);
  fake.http->failNext();
  fake.runUntilIdle();
  EXPECT_EQ(fake.advance(3600.0), 0U) << "without a network its return is the next trigger";
}

TEST_F(ServerAway, IsTriedWithOneRowAtATimeAtIntervalsThatDoubleToTenMinutes) {
  storeTwo(true);
  answerWith(503);
  for (int more = 0; more < 8; ++more) send("three");
  const auto tries = [this] { return resent().size() - 10; };
  fake.advance(72.2);
  EXPECT_EQ(tries(), 1U);
  EXPECT_EQ(testing::last(resent()), "one");
  fake.advance(23.0);
  EXPECT_EQ(tries(), 1U) << "the interval after a try is 48 seconds at least";
  fake.advance(50.0);
  EXPECT_EQ(tries(), 2U);
  EXPECT_EQ(testing::last(resent()), "two");
  fake.advance(1.2 * (120 + 240 + 480));
  for (int longest = 0; longest < 2; ++longest) {
    const auto before = tries();
    fake.advance(1.2 * 600 + 0.1);
    EXPECT_GT(tries(), before);
  }
  for (int i = 0; i < 10; ++i) fake.advance(720.0);
  EXPECT_EQ(tries(), 10U) << "a row is tried once";
  send("one");
  fake.advance(72.2);
  EXPECT_EQ(tries(), 12U) << "once nothing waited the first interval is short again";
}

TEST_F(ServerAway, WaitsForTheNetworkWhereTheHostDidNotAskForMore) {
  storeTwo(false);
  send("three");
  fake.advance(3600.0);
  EXPECT_EQ(resent(), (Lines{"one", "two", "three"}));
}

TEST_F(ServiceClientTest, AnEventKeepsTheTokenOfItsMomentAndARowGetsThatOfItsSending) {
  start();
  setOnline(false);
  send("stored");
  const auto late = std::make_shared<LateTransport>();
  testing::installWith(fake, [&](auto& platform) { platform.http = late; });
  setOnline(true);
  send("tap");
  Kifo::setAuthorizationToken("the second user's");
  ASSERT_EQ(late->kept.size(), 2U);
  EXPECT_EQ(late->kept.at(0)().headers[0].second, "BearerMOBILE the second user's");
  EXPECT_EQ(late->kept.at(1)().headers[0].second, "BearerMOBILE token");
  late->stop();
}

TEST_F(SyncTest, AFileThatIsLockedBetweenTwoRowsCostsNeitherOfThem) {
  storeThree();
  answerNothing();
  setOnline(true);
  auto reader = std::make_unique<ForeignLock>(databasePath(), ForeignLock::kReader);
  Runtime::current()->store()->stopWaitingForLocks();
  fake.http->answerNext(200, "{}");
  fake.runUntilIdle();
  EXPECT_EQ(resent(), Lines{"one"}) << "what cannot be marked is not sent";
  EXPECT_GT(fake.advance(60.0), 0U) << "it is looked at again without a trigger";
  EXPECT_EQ(fake.advance(3600.0), 0U) << "once";
  reader.reset();
  answerWith(200);
  setOnline(false);
  setOnline(true);
  EXPECT_EQ(resent(), (Lines{"one", "two", "three"}));
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"0"});
}

TEST_F(SyncTest, ARowThatCannotBeRebuiltIsGivenUpWithoutARequest) {
  start(kCounted);
  setOnline(false);
  for (const char* row :
       {"('[1]', 'a', 'http://h/', 'POST', 0, 0)", "('{', 'b', 'http://h/', 'POST', 0, 0)",
        "('{}', 'c', 'no url', 'POST', 0, 0)", "(x'7bff7d', 'd', 'http://h/', 'POST', 0, 0)"}) {
    rows(std::string("insert into KifoLog (PARAMETERS, REQUEST_ID, URL, HTTPMETHOD, "
                     "ISSYNC_SUCCESS, TRYCOUNT) values ") +
         row);
  }
  const auto before = fake.http->count();
  for (int i = 0; i < 4; ++i) {
    setOnline(true);
    setOnline(false);
  }
  EXPECT_EQ(fake.http->count(), before);
  EXPECT_EQ(rows("select TRYCOUNT from KifoLog"), (Lines{"1", "1", "1", "1"}));
  EXPECT_EQ(lines("data is nil"), 1U);
  EXPECT_EQ(Kifo::statistics().sinceInitialize.givenUp(), 4);
}

TEST_F(SyncTest, AGetRowIsSentWithoutABody) {
  start(kCounted);
  setOnline(false);
  rows(
      "insert into KifoLog (PARAMETERS, REQUEST_ID, URL, HTTPMETHOD, ISSYNC_SUCCESS, TRYCOUNT) "
      "values "
      "('{\"a\":1}', 'g', 'http://h/p?a=1', 'GET', 0, 0)");
  setOnline(true);
  EXPECT_EQ(lastRequest().method, "GET");
  EXPECT_EQ(lastRequest().url, "http://h/p?a=1");
  EXPECT_FALSE(lastRequest().body);
}

}  // namespace
}  // namespace kifo
