#include "Kifo_iOS_Common_Kit/core/Statistics.h"

#include <atomic>
#include <map>
#include <thread>

#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

constexpr auto kTwoRows = R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":2},
                              "blockedEvents":[{"name":"secret"}]})";

void expectSum(const Counts& counts) {
  EXPECT_EQ(counts[Counter::composed] + counts[Counter::found],
            counts[Counter::delivered] + counts.givenUp() + counts.dropped() +
                counts[Counter::waiting] + counts[Counter::underWay]);
  for (std::size_t index = 0; index < kCounters; ++index) {
    const auto counter = static_cast<Counter>(index);
    EXPECT_GE(counts[counter], 0) << name(counter);
  }
}

class StatisticsTest : public SdkTest {
 protected:
  /// Runs what is due one task at a time and looks at the sum after each.
  void run() {
    do expectSum(Kifo::statistics().sinceInitialize);
    while (fake.executor->runOne());
  }
  void send(const std::string& name, EventParameters parameters = {}) {
    KifoEventManager::sendEvent(name, std::nullopt, std::move(parameters));
    run();
  }
  /// The network's return, step by step.
  void returnOfTheNetwork() {
    fake.reachability->change(2);
    run();
  }

  /// The counters that differ from `before`, by name.
  static std::map<std::string, std::int64_t> growth(const Counts& before, const Counts& after) {
    std::map<std::string, std::int64_t> grown;
    for (std::size_t index = 0; index < kCounters; ++index) {
      const auto counter = static_cast<Counter>(index);
      const auto difference = after[counter] - before[counter];
      if (difference != 0) grown.emplace(name(counter), difference);
    }
    return grown;
  }
  std::map<std::string, std::int64_t> grown() {
    const Counts now = Kifo::statistics().sinceInitialize;
    return growth(std::exchange(before_, now), now);
  }
  std::map<std::string, std::int64_t> grownOverLife() {
    const Counts now = Kifo::statistics().overLife;
    return growth(std::exchange(before_, now), now);
  }
  using Grown = std::map<std::string, std::int64_t>;

  /// The process ends, and the next one begins on the same files.
  void beginAgain(bool isKilled) {
    if (!isKilled) Runtime::current()->store()->writeCounters();
    if (!isKilled) fake.runUntilIdle();
    restartProcess();
    before_ = {};
  }

 private:
  Counts before_;
};

TEST_F(StatisticsTest, AnEventIsInOnePlaceFromItsCallToItsEnd) {
  start(kTwoRows);
  EXPECT_EQ(grown(), (Grown{{"composed", 3},
                            {"droppedWithoutAnswer", 1},
                            {"delivered", 2},
                            {"sent", 2},
                            {"stored", 2}}))
      << "the change of actor came before the first answer";
  send("secret");
  EXPECT_EQ(grown(), (Grown{{"blocked", 1}}));
  answerNothing();
  send("slow");
  EXPECT_EQ(grown(), (Grown{{"composed", 1}, {"stored", 1}, {"sent", 1}, {"underWay", 1}}));
  fake.http->answerNext(500);
  run();
  EXPECT_EQ(grown(), (Grown{{"failed", 1}, {"underWay", -1}, {"waiting", 1}}));

  setOnline(false);
  grown();
  send("quoted", {{"text", "it's"}});
  EXPECT_EQ(grown(), (Grown{{"composed", 1}, {"droppedUnquotable", 1}}));
  send("kept");
  EXPECT_EQ(grown(), (Grown{{"composed", 1}, {"stored", 1}, {"waiting", 1}}));
  send("lost");
  EXPECT_EQ(grown(), (Grown{{"composed", 1}, {"refusedByCap", 1}, {"droppedByCap", 1}}));

  returnOfTheNetwork();
  EXPECT_EQ(grown(), (Grown{{"resent", 1}, {"waiting", -1}, {"underWay", 1}}));
  fake.http->answerNext(200, "{}");
  run();
  EXPECT_EQ(grown(), (Grown{{"delivered", 1}, {"resent", 1}, {"waiting", -1}}));
  fake.http->failNext();
  run();
  EXPECT_EQ(grown(), (Grown{{"failed", 1}, {"givenUpNotAnswered", 1}, {"underWay", -1}}));

  setOnline(false);
  rows(
      "insert into KifoLog (PARAMETERS, REQUEST_ID, URL, DATE, ISSYNC, ISSYNC_SUCCESS, TRYCOUNT,"
      " HTTPMETHOD) values ('{}', 'other', 'http://listener', 1, 0, 0, 0, 'POST')");
  grown();
  returnOfTheNetwork();
  EXPECT_EQ(grown(), (Grown{{"found", 1}, {"resent", 1}, {"underWay", 1}}))
      << "another process has put the row there";
}

TEST_F(StatisticsTest, ARefusedCopyThatIsDeliveredIsNotDropped) {
  start(R"({"configuration":{"stopAllEvents":false}})");  // no row may wait
  grown();
  send("tap");
  EXPECT_EQ(grown(), (Grown{{"composed", 1}, {"sent", 1}, {"refusedByCap", 1}, {"delivered", 1}}));
  answerWith(500);
  send("tap");
  EXPECT_EQ(
      grown(),
      (Grown{
          {"composed", 1}, {"sent", 1}, {"refusedByCap", 1}, {"failed", 1}, {"droppedByCap", 1}}));
}

TEST_F(StatisticsTest, TheStoreKeepsThemAndExplainsWhatAKilledProcessLeftOpen) {
  start(kTwoRows);
  setOnline(false);
  send("kept");
  EXPECT_EQ(Kifo::statistics().sinceInitialize, Kifo::statistics().overLife);
  EXPECT_TRUE(Kifo::statistics().isLifeKept);
  beginAgain(/*isKilled=*/false);
  start(kTwoRows);
  EXPECT_EQ(grownOverLife(), (Grown{{"composed", 5},
                                    {"delivered", 4},
                                    {"droppedWithoutAnswer", 1},
                                    {"sent", 3},
                                    {"resent", 1},
                                    {"stored", 4}}))
      << "the row went out again with the first answer";

  answerNothing();
  send("with a row");
  send("quoted", {{"text", "it's"}});
  send("with another");
  EXPECT_EQ(grownOverLife(), (Grown{{"composed", 3}, {"sent", 3}, {"stored", 2}, {"underWay", 3}}));
  const Counts before = Kifo::statistics().overLife;
  beginAgain(/*isKilled=*/true);
  answerNothing();
  Kifo::initialize(configuration());
  run();
  EXPECT_EQ(growth(before, Kifo::statistics().overLife),
            (Grown{{"droppedAtEndOfProcess", 1}, {"waiting", 2}, {"underWay", -3}, {"stored", -1}}))
      << "what a commit leads to is in the next one";
}

TEST_F(StatisticsTest, AFileFromBeforeTheyWereCountedStaysAsItIs) {
  start(kTwoRows);
  setOnline(false);
  send("kept");
  rows("drop table KifoStatistics");
  beginAgain(/*isKilled=*/false);
  start(kTwoRows);
  EXPECT_FALSE(Kifo::statistics().isLifeKept);
  EXPECT_EQ(Kifo::statistics().sinceInitialize[Counter::found], 1);
  EXPECT_EQ(rows("select name from sqlite_master where type = 'table' and name like 'Kifo%'"),
            std::vector<std::string>{"KifoLog"});
}

TEST_F(StatisticsTest, EachDuePopupIsShownOrRefusedForOneReason) {
  start(R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":2},"model":[
    {"uuid":"u1","type":"POPUP","maxShowCount":1,"triggeringEventName":"good","buttons":[]},
    {"uuid":"u2","type":"POPUP","triggeringEventName":"bad","buttons":[]},
    {"uuid":"u3","type":"SURVEY","maxShowCount":1,"triggeringEventName":"bad"},
    {"uuid":"u4","type":"SCORE","maxShowCount":1,"triggeringEventName":"bad"},
    {"uuid":"u5","type":"CAKE","maxShowCount":1,"triggeringEventName":"bad"}]})");
  auto screen = std::make_shared<HomeScreen>();
  const auto trigger = [&](const char* event, const std::shared_ptr<HomeScreen>& controller) {
    KifoEventManager::sendEvent(controller, event, std::nullopt);
    fake.runUntilIdle();
    fake.advance(0.5);
    auto popups = grown();
    std::erase_if(popups, [](const auto& each) { return !each.first.starts_with("popups"); });
    return popups;
  };
  EXPECT_EQ(trigger("good", screen), (Grown{{"popupsDue", 1}, {"popupsShown", 1}}));
  EXPECT_EQ(trigger("good", screen), (Grown{{"popupsDue", 1}, {"popupsRefusedNoShowsLeft", 1}}));
  EXPECT_EQ(trigger("good", nullptr), (Grown{{"popupsDue", 1}, {"popupsRefusedNoScreen", 1}}));
  EXPECT_EQ(trigger("bad", screen), (Grown{{"popupsDue", 4},
                                           {"popupsRefusedUnidentified", 1},
                                           {"popupsRefusedOptions", 1},
                                           {"popupsRefusedScoreRange", 1},
                                           {"popupsRefusedUnknownType", 1}}));
  fake.popups->requests().front()->actionItem(nullptr);
  EXPECT_EQ(grown().at("popupsClosed"), 1);
}

TEST_F(StatisticsTest, AReaderBesideSendersNeverSeesAnEventTwiceOrNotAtAll) {
  Counters counters;
  std::atomic<bool> isDone = false;
  const auto live = [&](Counter end) {
    for (int number = 0; number < 20'000; ++number) {
      counters.add(Counter::composed);
      counters.add(end);
    }
  };
  std::thread one(live, Counter::delivered);
  std::thread other(live, Counter::droppedByCap);
  std::thread rowsOfThem([&] {
    for (int number = 0; number < 20'000; ++number) {
      counters.add(Counter::composed);
      counters.toWaiting();
      counters.takeWaiting();
      counters.add(Counter::givenUpNotAnswered);
    }
    isDone = true;
  });
  while (!isDone) {
    const Counts counts = counters.read().sinceInitialize;
    expectSum(counts);
    EXPECT_LE(counts[Counter::underWay], 3 + 60'000);
  }
  one.join();
  other.join();
  rowsOfThem.join();
  const Counts counts = counters.read().sinceInitialize;
  EXPECT_EQ(counts[Counter::composed], 60'000);
  EXPECT_EQ(counts[Counter::underWay], 0);
}

}  // namespace
}  // namespace kifo
