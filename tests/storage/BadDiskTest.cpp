// The store on a disk that is full, read-only or changed behind its back.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

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

  /// Runs `body` on a thread for which `fake.directory` is a small disk of its own.
  void onSmallDisk(const std::function<void()>& body) {
    std::string whyNot;
    std::thread([&] {
      const bool isThere =
          unshare(CLONE_NEWNS) == 0 &&
          mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
          mount("none", fake.directory.path().c_str(), "tmpfs", 0, "size=512k") == 0;
      if (isThere) return body();
      whyNot = "cannot mount a disk of its own";
    }).join();
    if (!whyNot.empty()) GTEST_SKIP() << whyNot;
  }

  /// Leaves `free` bytes, in whole pages.
  void fill(off_t free) const {
    const std::string path = fake.directory.file("ballast");
    const int file = open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    const std::string page(4096, 'b');
    off_t size = 0;
    for (ssize_t written = 0; (written = write(file, page.data(), page.size())) > 0;) {
      size += written;
    }
    ASSERT_GT(size, free);
    ASSERT_EQ(ftruncate(file, size - free), 0);
    close(file);
  }
};

TEST_F(BadDiskTest, FullAtAnyWriteItLosesOnlyThatGroupAndGoesOnWhenThereIsRoom) {
  onSmallDisk([this] {
    start();
    setOnline(false);
    const int atFirst = stored();
    int kept = 0;
    int attempts = 0;
    for (off_t free = 0; kept < 3 && free < 100 * 4096; free += 4096, ++attempts) {
      SCOPED_TRACE(free);
      const int before = stored();
      fill(free);
      for (const char* name : {"one", "two", "three"}) send(name);
      fake.runUntilIdle();
      fs::remove(fake.directory.file("ballast"));
      kept = stored() - before;
      EXPECT_TRUE(kept == 0 || kept == 3) << kept;
      EXPECT_EQ(rows("pragma integrity_check"), std::vector<std::string>{"ok"});
      store("after");
      ASSERT_EQ(stored(), before + kept + 1);
    }
    EXPECT_EQ(kept, 3);
    EXPECT_GT(attempts, 3) << "the disk was full at several writes";
    EXPECT_EQ(stored(), atFirst + attempts + 3);
  });
}

TEST_F(BadDiskTest, StoresAgainAfterAReadOnlyTime) {
  onSmallDisk([this] {
    start();
    setOnline(false);
    const int before = stored();
    const auto remount = [this](unsigned long flags) {
      return mount("none", fake.directory.path().c_str(), "tmpfs", MS_REMOUNT | flags, nullptr);
    };
    ASSERT_EQ(remount(MS_RDONLY), 0);
    store("lost");
    ASSERT_EQ(remount(0), 0);
    store("kept");
    EXPECT_EQ(stored(), before + 1);
  });
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
  EXPECT_THAT(rows("select PARAMETERS from KifoLog"),
              ::testing::Contains(::testing::HasSubstr("\"after\"")));
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
