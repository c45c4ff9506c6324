#include "Kifo_iOS_Common_Kit/storage/DataManager.h"

#include <sqlite3.h>

#include <fstream>

#include "tests/support/ForeignLock.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

class DataManagerTest : public SdkTest {
 protected:
  DataManagerTest() {
    data.createTable();
    fake.runUntilIdle();
  }

  static KifoLog log(const std::string& requestId, const std::string& parameters = "{}") {
    return {0, parameters, "http://h/p", "POST", 12, 0, 1, requestId};
  }

  void cache(const std::string& requestId, std::int64_t limit,
             const std::string& parameters = "{}") {
    data.cacheLog(limit, requestId, [=] { return log(requestId, parameters); });
  }

  std::int64_t waiting() {
    std::int64_t count = -1;
    data.unsyncedLogCount([&](std::int64_t n) { count = n; });
    fake.runUntilIdle();
    return count;
  }

  /// The file's change counter.
  int commits() const {
    std::ifstream file(databasePath());
    char counter[4] = {};
    file.seekg(24).read(counter, sizeof counter);
    return counter[3];
  }

  Lines ids() { return rows("select REQUEST_ID from KifoLog order by ID"); }

  DataManager data;
};

TEST_F(DataManagerTest, AnInsertWritesEveryColumnAndOnlyBelowTheLimit) {
  data.insertLog(1, 1, log("full"));
  data.insertLog(0, 1, log("fits"));
  fake.runUntilIdle();
  EXPECT_EQ(rows("select * from KifoLog"), (Lines{"1|{}|fits|http://h/p|12|1|0|0|POST"}));
  EXPECT_EQ(fake.console->count("Kifo DataManager: Database is being created"), 1U);
}

TEST_F(DataManagerTest, NoValueThatHoldsAnApostropheEverBecomesARowOrAnotherStatement) {
  for (const std::string evil :
       {R"({"a":"it's"})", "', 'x', 'u', 0, 0, 0, 'POST', 0); delete from KifoLog; --",
        "x', 'y', 'z', 1, 1, 1, 'POST', 0) --", "x', 'z', 1, 1, 1, 'POST', 0) --"}) {
    cache("evil", 10, evil);
    cache(evil, 10);
    data.deleteLog("keep' or '1'='1");
    data.updateSyncStatus("keep' or '1'='1", 1);
    data.increaseTryCount("keep' or '1'='1");
  }
  cache(std::string("nul\0rest", 8), 10);
  cache("keep", 10);
  fake.runUntilIdle();
  EXPECT_EQ(rows("select REQUEST_ID, TRYCOUNT, ISSYNC_SUCCESS from KifoLog"), (Lines{"keep|0|0"}));
}

TEST_F(DataManagerTest, TheCapHoldsHoweverManyThreadsStoreAtOnce) {
  testing::onThreads(4, [this](int thread) {
    for (int i = 0; i < 25; ++i) cache(std::to_string(thread * 100 + i), 17);
  });
  fake.runUntilIdle();
  EXPECT_EQ(waiting(), 17);
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"17"});
  rows("delete from KifoLog where ID = 1");  // by another process: one more fits
  cache("late", 17);
  cache("too late", 17);
  EXPECT_EQ(waiting(), 17);
}

TEST_F(DataManagerTest, TheFirstWaitingRowComesTwiceAndItsNumbersReadBackAsZeroAndNoneComesOnce) {
  cache("tried", 10);
  data.increaseTryCount("tried");
  int ends = 0;
  data.firstUnsyncedLog([&](const auto& record) { ends += record ? 100 : 1; });
  fake.runUntilIdle();
  EXPECT_EQ(ends, 1) << "nothing waits";
  std::int64_t between = -1;
  cache("first", 10, R"({"n":1})");
  data.unsyncedLogCount([&](std::int64_t count) { between = count; });
  cache("second", 10);
  fake.runUntilIdle();
  EXPECT_EQ(between, 1) << "a read sees the writes before it and not the next ones";
  std::vector<KifoLog> records;
  data.firstUnsyncedLog([&](const auto& record) { records.push_back(record.value()); });
  fake.runUntilIdle();
  ASSERT_EQ(records.size(), 2U);
  for (const auto& record : records) {
    EXPECT_EQ(record._requestId, "first");
    EXPECT_EQ(record._paramaters, R"({"n":1})");
    EXPECT_EQ(record._url, "http://h/p");
    EXPECT_EQ(record._httpMethod, "POST");
    EXPECT_EQ(record._id + record._date + record._tryCount + record._isSync, 0);
  }
}

TEST_F(DataManagerTest, AStepOfAPassRemovesAndMarksWithOneCommitOrDoesNeither) {
  for (const char* id : {"a", "b", "c"}) cache(id, 10);
  fake.runUntilIdle();
  std::string seen;
  const auto take = [&](const std::string& delivered, bool isWanted) {
    seen.clear();
    DataManager::Taken result;
    const int before = commits();
    data.takeNext(
        delivered,
        [&](const auto& row) {
          seen += row ? row->_requestId : "-";
          return isWanted;
        },
        [&](const auto& taken) { result = taken; });
    fake.runUntilIdle();
    EXPECT_EQ(commits() - before, result.isDeleted || result.row ? 1 : 0);
    return std::string(result.isDeleted ? "deleted" : "") + (result.isLocked ? "locked" : "") +
           (result.row ? " " + result.row->_requestId : "");
  };
  const auto left = [this] { return rows("select REQUEST_ID, TRYCOUNT from KifoLog"); };

  EXPECT_EQ(take("", false), "") << "a row that is not wanted is left as it is";
  EXPECT_EQ(take("a", true), "deleted b");
  EXPECT_EQ(seen, "bb") << "the row, and the end";
  EXPECT_EQ(left(), (Lines{"b|1", "c|0"}));
  KifoSqliteManager::sharedManager()->stopWaitingForLocks();
  for (const auto& [lock, calls] :
       {std::pair(ForeignLock::kReader, "cc"), std::pair(ForeignLock::kWriter, "cc"),
        std::pair("BEGIN EXCLUSIVE", "")}) {
    const ForeignLock other(databasePath(), lock);
    EXPECT_EQ(take("b", true), "locked") << lock;
    EXPECT_EQ(seen, calls) << "a locked file is not an empty one";
    fake.inspector->clear();
    cache("refused", 10);
    fake.runUntilIdle();
    EXPECT_THAT(fake.inspector->ofKind("notStored").at(0).particulars,
                Contains(Pair("reason", "locked")));
  }
  rows("create trigger no before update on KifoLog begin select raise(abort, 'no'); end");
  EXPECT_EQ(take("b", true), "") << "where the next cannot be marked, the last is not removed";
  rows("drop trigger no");
  EXPECT_EQ(left(), (Lines{"b|1", "c|0"}));
  EXPECT_EQ(take("b", false), "deleted");
  EXPECT_EQ(take("", true), " c");
  EXPECT_EQ(take("c", true), "deleted");
  EXPECT_EQ(seen, "-");
  EXPECT_TRUE(left().empty());
}

TEST_F(DataManagerTest, MarkingSetsBothColumnsAndAnEmptyIdIsRefused) {
  cache("a", 10);
  fake.runUntilIdle();
  rows("insert into KifoLog (REQUEST_ID, ISSYNC_SUCCESS, TRYCOUNT) values ('', 0, 0)");
  data.updateSyncStatus("a", 1);
  data.updateSyncStatus("", 1);
  data.increaseTryCount("");
  data.deleteLog("");
  fake.runUntilIdle();
  EXPECT_EQ(rows("select ISSYNC, ISSYNC_SUCCESS, TRYCOUNT from KifoLog"),
            (Lines{"1|1|0", "NULL|0|0"}));
  EXPECT_EQ(fake.console->count("Kifo DataManager: Request id is empty"), 1U);
  EXPECT_EQ(fake.console->count("Kifo DataManager: increaseTryCount - requestId is empty"), 1U);
}

TEST_F(DataManagerTest, RowsAreFoundThroughAnIndexInTheOrderOfTheirNumbers) {
  const auto plan = [this](const std::string& statement) {
    const auto lines = rows("explain query plan " + statement);
    std::string text;
    for (const auto& line : lines) text += line + "\n";
    return text;
  };
  EXPECT_EQ(plan("select ID, URL from KifoLog where ISSYNC_SUCCESS = 0 and TRYCOUNT = 0 LIMIT 1")
                .find("SCAN"),
            std::string::npos);
  EXPECT_EQ(plan("delete from KifoLog where REQUEST_ID = 'a' or TRYCOUNT > 0").find("SCAN"),
            std::string::npos);
  EXPECT_EQ(plan("update KifoLog set TRYCOUNT = TRYCOUNT + 1 where REQUEST_ID = 'a'").find("SCAN"),
            std::string::npos);
}

TEST_F(DataManagerTest, WritesThatWaitShareOneCommitAndFailAlone) {
  for (const char* id : {"1", "2", "3"}) cache(id, 10);
  fake.runUntilIdle();
  rows("create trigger no before update of TRYCOUNT on KifoLog begin select raise(abort, ''); end");
  fake.inspector->clear();
  const int before = commits();
  std::string seen;
  const auto store = [&](const std::string& id, std::int64_t limit, std::function<KifoLog()> make) {
    return data.cacheLog(limit, id, std::move(make), [&, id](CopyOutcome outcome) {
      EXPECT_EQ(commits(), before + 1) << "told after the commit";
      seen += id + (outcome == CopyOutcome::stored ? "+" : "-");
    });
  };
  store("b", 10, [] { return log("b", "it's"); });
  store("a", 10, [] { return log("a"); });
  store("c", 10, []() -> KifoLog { throw std::runtime_error("no row"); });
  data.increaseTryCount("1", [&](bool isMarked) { seen += isMarked ? "1+" : "1-"; });
  data.updateSyncStatus("a", 0, [&] { seen += "a0"; });
  store("d", 5, [] { return log("d"); });
  store("e", 5, []() -> KifoLog { throw std::runtime_error("composed without need"); });
  EXPECT_TRUE(seen.empty());
  EXPECT_FALSE(store("f", 5, [] { return log("f"); })) << "five copies wait already";
  fake.runUntilIdle();
  EXPECT_EQ(seen, "b-a+c-1-a0d+e-");
  EXPECT_EQ(rows("select REQUEST_ID, ISSYNC from KifoLog where ID > 3"), (Lines{"a|1", "d|1"}));
  Lines reasons;
  for (const auto& decision : fake.inspector->ofKind("notStored")) {
    reasons.push_back(decision.particulars[0].second + " " + decision.particulars[1].second);
  }
  EXPECT_EQ(reasons, (Lines{"f cap", "b apostrophe", "c failed", "e cap"}));
}

TEST_F(DataManagerTest, AFileThatIsNoDatabasePrintsNothing) {
  std::ofstream(databasePath(), std::ios::trunc) << std::string(4096, 'x');
  fake.console->clear();
  cache("a", 10);
  data.firstUnsyncedLog([](const auto&) { FAIL(); });
  fake.runUntilIdle();
  EXPECT_TRUE(fake.console->lines().empty());
}

}  // namespace
}  // namespace kifo
