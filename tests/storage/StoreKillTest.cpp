#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "testing/ChildProgram.h"
#include "testing/TemporaryDirectory.h"
#include "testing/server/LocalServer.h"
#include "tests/support/DatabaseRows.h"

namespace kifo::testing {
namespace {

using Lines = std::vector<std::string>;

class StoreKillTest : public ::testing::Test {
 protected:
  Lines rows(const std::string& query) {
    return databaseRows(directory_.file("KifoLog.db"), query);
  }

  void expectSoundFile() {
    EXPECT_EQ(rows("pragma integrity_check"), Lines{"ok"});
    EXPECT_EQ(rows("select count(*) from KifoLog where REQUEST_ID is null or HTTPMETHOD <> 'POST' "
                   "or URL not like 'http://%' or not json_valid(PARAMETERS)"),
              Lines{"0"})
        << "whole rows only";
  }

  TemporaryDirectory directory_;
  ChildProgram child_;
};

TEST_F(StoreKillTest, AHostThatDiesWithinAGroupKeepsTheGroupsBeforeAndNothingOfThisOne) {
  child_.start({KIFO_STORE_CHILD, "group", directory_.path()});
  EXPECT_EQ(child_.wait(), std::nullopt) << "it kills itself";
  EXPECT_GT(std::filesystem::file_size(directory_.file("KifoLog.db-journal")), 0U)
      << "pages had reached the file";
  expectSoundFile();
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"10"});
}

TEST_F(StoreKillTest, AJournalWhoseFileWasRemovedDoesNotReachTheNextFile) {
  child_.start({KIFO_STORE_CHILD, "group", directory_.path()});
  EXPECT_EQ(child_.wait(), std::nullopt) << "it kills itself";
  ASSERT_GT(std::filesystem::file_size(directory_.file("KifoLog.db-journal")), 0U);
  std::filesystem::remove(directory_.file("KifoLog.db"));
  child_.start({KIFO_STORE_CHILD, "events", directory_.path()});
  ASSERT_TRUE(child_.awaitOutput(100));
  child_.kill();
  expectSoundFile();
  EXPECT_EQ(rows("select count(*) from KifoLog where PARAMETERS = '{}'"), Lines{"0"})
      << "rows of the file that was removed";
}

TEST_F(StoreKillTest, AHostThatDiesBetweenAnyTwoStepsOfAnErasingHasErasedAllAtItsNextStart) {
  for (int step = 1, end = 0; end == 0; ++step) {
    SCOPED_TRACE(step);
    const TemporaryDirectory home;
    ChildProgram host;
    host.start({KIFO_STORE_CHILD, "revoke", home.path(), std::to_string(step)});
    // A host that lives on has fewer steps.
    if (const auto status = host.wait()) end = *status == 0 ? step : -1;
    ASSERT_GE(end, 0);
    host.start({KIFO_STORE_CHILD, "begin", home.path()});
    ASSERT_EQ(host.wait(), 0);
    std::set<std::string> left;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
      if (entry.is_regular_file()) left.insert(entry.path().filename());
    }
    if (step == 1) {
      EXPECT_TRUE(left.contains("consent.given")) << "killed before it had refused";
    } else {
      EXPECT_EQ(left, std::set<std::string>{"consent.refused"});
    }
    EXPECT_TRUE(end == 0 || step > 5) << "there were steps to die between";
  }
}

/// Hosts on one home, whose counters are compared with what their server saw.
class CountedHost : public ::testing::Test {
 protected:
  using Counters = std::map<std::string, std::int64_t>;

  CountedHost() {
    server_.campaigns().serveText(
        R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":100000}})");
    server_.start();
  }

  void start(ChildProgram& host, int events) const {
    host.start({KIFO_STORE_CHILD, "count", home_.path(), server_.uri(), std::to_string(events)});
  }
  /// Sends many events; what the host prints at its end, over the life of its store.
  Counters counted(int events) const {
    ChildProgram host;
    start(host, events);
    std::istringstream output(host.readAll());
    EXPECT_EQ(host.wait(), 0);
    std::string dots;
    std::getline(output, dots);
    Counters counters;
    std::int64_t value = 0;
    for (std::string name; output >> name >> value;) counters[name] = value;
    return counters;
  }
  static void expectSum(const Counters& counters) {
    std::int64_t ended = 0;
    for (const auto& [name, value] : counters) {
      if (name == "delivered" || name.starts_with("givenUp") || name.starts_with("dropped")) {
        ended += value;
      }
    }
    EXPECT_EQ(counters.at("composed") + counters.at("found"), ended);
    EXPECT_EQ(counters.at("waiting"), 0);
    EXPECT_EQ(counters.at("underWay"), 0);
  }
  /// Events that the server received and, unless `status` is none, answered so.
  std::int64_t received(std::optional<int> status = std::nullopt) {
    return std::ranges::count_if(server_.requests().on("/sdkListenerEvent"), [&](const auto& each) {
      return !status || each->status == *status;
    });
  }

  const TemporaryDirectory home_;
  LocalServer server_;
};

TEST_F(CountedHost, ThroughFaultsAndCutsCountsWhatTheServerCounts) {
  server_.setFaults({.everyOther = 500, .on = Faults::On::LISTENER, .times = 300});
  const Counters counters = counted(400);
  ASSERT_FALSE(counters.empty());
  expectSum(counters);
  EXPECT_EQ(counters.at("delivered"), received(200));
  EXPECT_EQ(counters.at("failed"), received(500));
  EXPECT_EQ(counters.at("sent") + counters.at("resent"), received());
  EXPECT_GT(counters.at("givenUpNotAnswered"), 0);
  EXPECT_GT(counters.at("resent"), 0);
}

TEST_F(CountedHost, KilledAndBegunAgainExplainsEveryEventThatItHadStored) {
  server_.setFaults(
      {.connection = Faults::Connection::DROP, .on = Faults::On::LISTENER, .times = 100});
  for (const std::size_t moment : {37U, 148U, 260U}) {
    ChildProgram host;
    start(host, 400);
    ASSERT_TRUE(host.awaitOutput(moment));
    host.kill();
  }
  const auto rows = databaseRows(home_.file("KifoLog.db"),
                                 "select count(*) from KifoLog where TRYCOUNT = 0 and "
                                 "ISSYNC_SUCCESS = 0");
  const Counters counters = counted(10);
  ASSERT_FALSE(counters.empty());
  expectSum(counters);
  EXPECT_GE(counters.at("composed"), std::stoll(rows.at(0)));
  EXPECT_LE(counters.at("delivered"), received(200));
}

}  // namespace
}  // namespace kifo::testing
