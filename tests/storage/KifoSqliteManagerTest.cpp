#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/support/ForeignLock.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

/// For as long as this lives SQLite's waits take no time; each calls `wait` with its microseconds.
class InstantSleep {
 public:
  explicit InstantSleep(std::function<void(int)> wait) : vfs_(*sqlite3_vfs_find(nullptr)) {
    wait_ = std::move(wait);
    vfs_.zName = "instant";
    vfs_.xSleep = [](sqlite3_vfs*, int microseconds) {
      wait_(microseconds);
      return microseconds;
    };
    sqlite3_vfs_register(&vfs_, /*makeDflt=*/1);
  }
  ~InstantSleep() { sqlite3_vfs_unregister(&vfs_); }
  InstantSleep(const InstantSleep&) = delete;
  InstantSleep& operator=(const InstantSleep&) = delete;

 private:
  static inline std::function<void(int)> wait_;
  sqlite3_vfs vfs_;
};

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

  const std::shared_ptr<KifoSqliteManager> shared = KifoSqliteManager::sharedManager();
  KifoSqliteManager& manager = *shared;
};

TEST_F(SqliteManagerTest, AMissingFileIsMadeWholeAndOnlyByThePreparation) {
  EXPECT_FALSE(execute("select 1"));
  EXPECT_FALSE(std::filesystem::exists(databasePath()));
  prepare();
  EXPECT_EQ(count("select count(*) from KifoLog"), 0);
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

TEST_F(SqliteManagerTest, WhatIsMadeIsForThisUserAloneWhateverTheUmask) {
  namespace fs = std::filesystem;
  const auto permissions = [](const fs::path& path) { return fs::status(path).permissions(); };
  constexpr auto ownerFile = fs::perms::owner_read | fs::perms::owner_write;
  for (const mode_t mask : {0, 0022, 0777}) {
    const fs::path parent = fake.directory.path() + "/mask-" + std::to_string(mask);
    const fs::path directory = parent / "kifo";
    const auto own = std::make_shared<KifoSqliteManager>(fake.mainQueue, directory);
    const mode_t before = umask(mask);
    own->prepareDb();
    own->perform([&](StoreConnection& file) {
      file.run("BEGIN IMMEDIATE");
      file.run("insert into KifoLog (REQUEST_ID) values ('a')");
      EXPECT_EQ(permissions(directory / "KifoLog.db-journal"), ownerFile);
    });
    own->createDatabaseWithName("other.db", false, {});
    fake.runUntilIdle();
    umask(before);
    EXPECT_EQ(permissions(parent), fs::perms::owner_all);
    EXPECT_EQ(permissions(directory), fs::perms::owner_all);
    EXPECT_EQ(permissions(directory / "other.db"), ownerFile);
    const fs::path database = directory / "KifoLog.db";
    EXPECT_EQ(permissions(database), ownerFile);
    fs::permissions(database, fs::perms::all);
    own->prepareDb();
    fake.runUntilIdle();
    EXPECT_EQ(permissions(database), ownerFile) << "one from an earlier version";
  }
}

TEST_F(SqliteManagerTest, RowsArriveAsTextOneByOneAndThenTheEndAndACountIsThatOfTheLast) {
  prepare();
  EXPECT_EQ(query("\n\r\nselect 7, NULL, 1.5, 'a''b', x'' union all select 8, 'x', 2, '', NULL\n"),
            (std::vector<std::string>{"7;<null>;1.5;a'b;;", "8;x;2;;<null>;", "end"}));
  EXPECT_EQ(query("select 1 where 0"), (std::vector<std::string>{"end"}));
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

TEST_F(SqliteManagerTest, StatementsRunInTheOrderOfTheirIssueBehindThoseOfCallbacks) {
  prepare();
  std::string order;
  const auto note = [&](char c) {
    return [&order, c](const auto*, const auto&, bool) { order += c; };
  };
  manager.execute("select 1", [&](const auto*, const auto&, bool) {
    order += 'a';
    manager.execute("select 1", note('c'));
  });
  manager.execute("select 1", note('b'));
  fake.runUntilIdle();
  EXPECT_EQ(order, "abc");
}

TEST_F(SqliteManagerTest, WorkThatIsStillQueuedOutlivesItsOwner) {
  auto late = std::make_shared<KifoSqliteManager>(fake.mainQueue, fake.directory.path());
  late->prepareDb();
  late.reset();
  fake.runUntilIdle();
  EXPECT_TRUE(std::filesystem::exists(databasePath()));
}

TEST_F(SqliteManagerTest, AFileLockedByAnotherProcessIsWaitedForForFiveSeconds) {
  prepare();
  std::optional<ForeignLock> other;
  int waited = 0;
  int lockedFor = 0;
  const InstantSleep sleep([&](int microseconds) {
    waited += microseconds;
    if (waited >= lockedFor) other.reset();
  });
  for (const auto& [locked, expected] : {std::pair(100'000, 100'000), {60'000'000, 5'000'000}}) {
    waited = 0;
    lockedFor = locked;
    other.emplace(databasePath(), "BEGIN EXCLUSIVE");
    execute("insert into KifoLog (URL) values ('" + std::to_string(locked) + "')");
    EXPECT_EQ(waited, expected);
  }
  other.reset();
  EXPECT_EQ(rows("select URL from KifoLog"), std::vector<std::string>{"100000"});
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

TEST_F(SqliteManagerTest, MaintenanceReplacesNoFileAndReportsSuccessWithAnErrorForAFailedRename) {
  prepare();
  std::string reports;
  const auto note = [&](bool success, const auto& error) {
    reports += std::string(success ? "y" : "n") + (error ? "! " : " ");
  };
  manager.createDatabaseWithName("../one.db", true, note);
  manager.renameDatabaseWithName("../one.db", "KifoLog.db", note);
  manager.renameDatabaseWithName("../one.db", "one.db", note);
  manager.renameDatabaseWithName("other.db", "KifoLog.db", note);  // not current: no report
  manager.renameDatabaseWithName("../one.db", "missing/two.db", note);
  fake.runUntilIdle();
  EXPECT_EQ(count("select count(*) from KifoLog"), 0) << "the table is still there";
  const std::string two = Platform::current()->documentsDirectory + "/two.db";
  EXPECT_TRUE(std::filesystem::remove(two)) << "no name reaches out of the directory";
  manager.renameDatabaseWithName("missing/two.db", "three.db", note);
  manager.deleteDatabaseWithName("two.db", note);
  fake.runUntilIdle();
  EXPECT_EQ(reports, "y y! y! y y! n! ");
}

}  // namespace
}  // namespace kifo
