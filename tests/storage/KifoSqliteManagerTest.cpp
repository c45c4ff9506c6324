#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/support/ForeignLock.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

class SqliteManagerTest : public SdkTest {
 protected:
  void prepare() {
    manager.prepareDb();
    fake.runUntilIdle();
  }

  /// Everything that a query's block was called with, "end" for the last call.
  std::vector<std::string> query(const std::string& statement) {
    std::vector<std::string> calls;
    manager.performQuery(statement, [&](const auto* row, const auto& error, bool finished) {
      EXPECT_FALSE(error);
      if (finished) calls.push_back("end");
      if (!row) return;
      std::string line;
      for (const auto& cell : *row) line += cell.value_or("<null>") + ";";
      calls.push_back(line);
    });
    fake.runUntilIdle();
    return calls;
  }

  std::optional<std::int32_t> count(const std::string& statement) {
    std::optional<std::int32_t> result;
    manager.rowCount(statement, [&](std::int32_t n, const auto&, bool) { result = n; });
    fake.runUntilIdle();
    return result;
  }

  bool execute(const std::string& statement) {
    bool called = false;
    manager.execute(statement, [&](const auto*, const auto&, bool) { called = true; });
    fake.runUntilIdle();
    return called;
  }

  KifoSqliteManager& manager = KifoSqliteManager::sharedManager();
};

TEST_F(SqliteManagerTest, AMissingFileIsMadeWholeWithTheTableAsItsTextSays) {
  prepare();
  EXPECT_EQ(rows("select sql from sqlite_master where name = 'KifoLog'"),
            (std::vector<std::string>{
                "CREATE TABLE KifoLog (ID INTEGER PRIMARY KEY AUTOINCREMENT, PARAMETERS TEXT, "
                "REQUEST_ID TEXT, URL TEXT, DATE INTEGER, ISSYNC INTEGER, ISSYNC_SUCCESS INTEGER, "
                "TRYCOUNT INTEGER, HTTPMETHOD TEXT)"}));
  EXPECT_FALSE(std::filesystem::exists(databasePath() + ".new"));
}

TEST_F(SqliteManagerTest, AFileThatIsThereIsLeftAloneEvenWithoutTheTable) {
  std::ofstream(databasePath()).put('\n');
  prepare();
  EXPECT_EQ(std::filesystem::file_size(databasePath()), 1U);
  EXPECT_FALSE(count("select count(*) from KifoLog")) << "no table, no callback";
}

TEST_F(SqliteManagerTest, AStatementBeforeThePreparationLeavesNoEmptyFileBehind) {
  EXPECT_FALSE(execute("select 1"));
  prepare();
  EXPECT_EQ(count("select count(*) from KifoLog"), 0);
}

TEST_F(SqliteManagerTest, RowsArriveAsTextOneByOneAndThenTheEnd) {
  prepare();
  EXPECT_EQ(query("\n\r\nselect 7, NULL, 1.5, 'a''b', x'' union all select 8, 'x', 2, '', NULL\n"),
            (std::vector<std::string>{"7;<null>;1.5;a'b;;", "8;x;2;;<null>;", "end"}));
  EXPECT_EQ(query("select 1 where 0"), (std::vector<std::string>{"end"}));
}

TEST_F(SqliteManagerTest, ACountIsColumnZeroOfTheLastRowAndZeroWithoutRows) {
  prepare();
  EXPECT_EQ(count("select 3 union all select 5"), 5);
  EXPECT_EQ(count("select 3 where 0"), 0);
}

TEST_F(SqliteManagerTest, AMalformedStatementMakesNoCallbackAndTheNextOneRuns) {
  prepare();
  EXPECT_FALSE(execute("insert into KifoLog values ('it's')"));
  EXPECT_TRUE(query("selec").empty());
  EXPECT_FALSE(count("select count(*) from Nowhere"));
  EXPECT_TRUE(execute("insert into KifoLog (REQUEST_ID) values ('a')"));
  EXPECT_TRUE(execute("insert into KifoLog (ID) values (1)")) << "a failing step still finishes";
  EXPECT_EQ(count("select count(*) from KifoLog"), 1);
}

TEST_F(SqliteManagerTest, StatementsOfOneTurnRunBeforeWhatWasQueuedMeanwhile) {
  prepare();
  std::string order;
  const auto note = [&](char c) {
    return [&order, c](const auto*, const auto&, bool) { order += c; };
  };
  manager.inOneTurn([&] {
    manager.execute("select 1", [&](const auto*, const auto&, bool) {
      order += 'a';
      manager.execute("select 1", note('c'));
    });
    manager.execute("select 1", note('b'));
  });
  manager.execute("select 1", note('d'));
  fake.runUntilIdle();
  EXPECT_EQ(order, "abcd");
}

TEST_F(SqliteManagerTest, AStatementThatGoesWithTheNextSharesItsCommitAndItsFailure) {
  prepare();
  execute("insert into KifoLog (REQUEST_ID, TRYCOUNT) values ('a', 0), ('b', 0), ('c', 0)");
  const auto commits = [this] {  // the file's change counter
    std::ifstream file(databasePath());
    char counter[4] = {};
    file.seekg(24).read(counter, sizeof counter);
    return counter[3];
  };
  std::string order;
  const auto note = [&](char c) {
    return [&, c](const auto*, const auto&, bool) {
      order += manager.lastSucceeded() && manager.rowsChanged() == 1 ? c : '-';
    };
  };
  const auto takeOver = [&](const std::string& done, const std::string& next) {
    order.clear();
    const char before = commits();
    manager.inOneTurn([&] {
      manager.executeWithNext("delete from KifoLog where REQUEST_ID = '" + done + "'", note('x'));
      manager.performQuery("select 1", [](const auto*, const auto&, bool) {});
      if (!next.empty()) {
        manager.execute("update KifoLog set TRYCOUNT = 1 where REQUEST_ID = '" + next + "'",
                        note('y'));
      }
    });
    fake.runUntilIdle();
    return commits() - before;
  };
  const auto left = [this] { return rows("select REQUEST_ID, TRYCOUNT from KifoLog"); };

  EXPECT_EQ(takeOver("a", "b"), 1);
  EXPECT_EQ(order, "xy");
  EXPECT_EQ(left(), (std::vector<std::string>{"b|1", "c|0"}));
  manager.setHurried(true);
  // A reader lets them begin but not commit; a writer does not let them begin.
  for (const char* lock : {ForeignLock::kReader, ForeignLock::kWriter}) {
    {
      const ForeignLock other(databasePath(), lock);
      EXPECT_EQ(takeOver("b", "c"), 0);
    }
    EXPECT_EQ(order, "--");
    EXPECT_EQ(left(), (std::vector<std::string>{"b|1", "c|0"}));
  }
  manager.setHurried(false);
  EXPECT_EQ(takeOver("b", ""), 1) << "without a next one it runs when the turn ends";
  EXPECT_EQ(order, "x");
  EXPECT_EQ(left(), std::vector<std::string>{"c|0"});
}

TEST_F(SqliteManagerTest, AFileLockedByAnotherProcessIsWaitedFor) {
  prepare();
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(databasePath().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  std::thread release([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(150));  // how long the other holds on
    sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr);
  });
  EXPECT_TRUE(execute("insert into KifoLog (REQUEST_ID) values ('a')"));
  release.join();
  sqlite3_close(other);
  EXPECT_EQ(count("select count(*) from KifoLog"), 1);
}

TEST_F(SqliteManagerTest, OpeningAndClosingReportAsTheyAlwaysDid) {
  std::string calls;
  const auto note = [&](bool success, const auto&) { calls += success ? "y" : "n"; };
  manager.openLocalDatabaseWithName("any", note);
  manager.closeLocalDatabaseWithName("any", note);
  manager.openLocalDatabaseWithName("any", {});
  fake.runUntilIdle();
  EXPECT_EQ(calls, "yy");
}

TEST_F(SqliteManagerTest, MaintenanceReportsSuccessWithAnErrorForAFailedRename) {
  std::vector<std::pair<bool, bool>> reports;
  const auto note = [&](bool success, const auto& error) {
    reports.emplace_back(success, error.has_value());
  };
  manager.createDatabaseWithName("../one.db", true, note);
  manager.renameDatabaseWithName("other.db", "two.db", note);  // not current: no report
  manager.renameDatabaseWithName("../one.db", "missing/two.db", note);
  manager.renameDatabaseWithName("missing/two.db", "three.db", note);
  fake.runUntilIdle();
  EXPECT_TRUE(std::filesystem::exists(Platform::current()->documentsDirectory + "/three.db"))
      << "no name reaches out of the directory";
  std::filesystem::remove(Platform::current()->documentsDirectory + "/three.db");
  manager.renameDatabaseWithName("three.db", "four.db", note);
  manager.deleteDatabaseWithName("three.db", note);
  fake.runUntilIdle();
  EXPECT_EQ(reports,
            (std::vector<std::pair<bool, bool>>{
                {true, false}, {true, false}, {true, false}, {true, true}, {false, true}}));
}

}  // namespace
}  // namespace kifo
