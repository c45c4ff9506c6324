// The store on a disk that is full or changed behind its back.

#include <filesystem>
#include <fstream>

#include "tests/support/FullDisk.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

namespace fs = std::filesystem;

class BadDiskTest : public SdkTest {
 protected:
  BadDiskTest() { setOnline(false); }

  /// Sends an event of some 2 KB, as one group with others that are sent before the queues run.
  static void send(const std::string& name) {
    KifoEventManager::sendEvent(name, std::nullopt, {{"text", std::string(2000, 'x')}});
  }
  void store(const std::string& name) {
    send(name);
    fake.runUntilIdle();
  }
  int stored() { return std::stoi(rows("select count(*) from KifoLog").at(0)); }
};

TEST_F(BadDiskTest, FullAtAnyWriteItLosesOnlyThatGroupAndGoesOnWhenThereIsSpace) {
  start();
  setOnline(false);
  const int atFirst = stored();
  int kept = 0;
  int attempts = 0;
  // The file grows by some 8 KB each time.
  for (rlim_t bytes = 0; kept < 3 && attempts < 40; bytes += 12'288, ++attempts) {
    SCOPED_TRACE(bytes);
    const int before = stored();
    {
      const testing::FullDisk full(bytes);
      for (const char* name : {"one", "two", "three"}) send(name);
      fake.runUntilIdle();
    }
    kept = stored() - before;
    EXPECT_TRUE(kept == 0 || kept == 3) << kept;
    EXPECT_EQ(rows("pragma integrity_check"), std::vector<std::string>{"ok"});
    store("after");
    ASSERT_EQ(stored(), before + kept + 1);
  }
  EXPECT_EQ(kept, 3);
  EXPECT_GT(attempts, 3) << "the disk was full at several writes";
  EXPECT_EQ(stored(), atFirst + attempts + 3);
  // The file is gone and there is no space, or too little, for another.
  for (rlim_t bytes = 0; bytes < 40'000; bytes += 4096) {
    fs::remove(databasePath());
    {
      const testing::FullDisk full(bytes);
      store("lost");
    }
    store("kept");
    EXPECT_GE(stored(), 1) << bytes;
  }
}

struct Damage {
  const char* name;
  void (*damage)(const std::string& database);
  void (*repair)(const std::string& database);
};

class DamagedStoreTest : public BadDiskTest, public ::testing::WithParamInterface<Damage> {};

TEST_P(DamagedStoreTest, GoesOnAndStoresAgainOnceItCan) {
  start();
  setOnline(false);
  store("before");
  GetParam().damage(databasePath());
  store("meanwhile");
  GetParam().repair(databasePath());
  store("after");
  EXPECT_THAT(rows("select PARAMETERS from KifoLog"), Contains(HasSubstr("\"after\"")));
  EXPECT_EQ(rows("pragma integrity_check"), std::vector<std::string>{"ok"});
}

std::string directoryOf(const std::string& database) {
  return fs::path(database).parent_path();
}

INSTANTIATE_TEST_SUITE_P(
    Damages, DamagedStoreTest,
    ::testing::Values(Damage{"FileRemoved", [](const std::string& file) { fs::remove(file); },
                             [](const std::string&) {}},
                      Damage{"FileReplacedByADirectory",
                             [](const std::string& file) {
                               fs::remove(file);
                               fs::create_directory(file);
                             },
                             [](const std::string& file) { fs::remove(file); }},
                      Damage{"FileReplacedByText",
                             [](const std::string& file) { std::ofstream(file) << "text"; },
                             [](const std::string& file) { fs::remove(file); }},
                      Damage{"DirectoryRemoved",
                             [](const std::string& file) { fs::remove_all(directoryOf(file)); },
                             [](const std::string&) {}}),
    [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace kifo
