#include "platform/linux/FileUserDefaults.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/support/FullDisk.h"

namespace kifo::testing {
namespace {

namespace fs = std::filesystem;

class FileUserDefaultsTest : public FakesTest {
 protected:
  std::shared_ptr<FileUserDefaults> open() {
    return std::make_shared<FileUserDefaults>(directory_, fake_.mainQueue);
  }
  std::string path(const char* name = "defaults.json") const { return directory_ + "/" + name; }
  void write(const std::string& text) const {
    fs::create_directories(directory_);
    std::ofstream(path()) << text;
  }

  const std::string directory_ = fake_.directory.file("new/and/deep");
};

TEST_F(FileUserDefaultsTest, ValuesOutliveTheProcessWithTheirTypes) {
  const std::vector<std::pair<std::string, DefaultsValue>> values = {
      {"flag", false},
      {"whole", std::int64_t{INT64_MIN}},
      {"number", 5000.0},
      {"text", std::string("é\"\\\n")},
      {"bytes", std::string("\xff\0'", 3)},
      {"", std::string()},
  };
  auto first = open();
  for (const auto& [key, value] : values) first->setValue(key, value);
  first.reset();  // the write that waits outlives it
  fake_.runUntilIdle();
  const auto second = open();
  for (const auto& [key, value] : values) EXPECT_EQ(second->value(key), value) << key;
}

TEST_F(FileUserDefaultsTest, RemovedTheyLeaveNoFileAlsoBehindAWriteThatWaits) {
  write("no JSON");
  const auto defaults = open();
  defaults->setValue("key", true);
  fake_.runUntilIdle();
  EXPECT_TRUE(fs::exists(path("defaults.json.bad")));
  defaults->setValue("other", true);
  EXPECT_TRUE(defaults->removeAll());
  fake_.runUntilIdle();
  EXPECT_TRUE(fs::is_empty(directory_));
  fs::create_directory(path());
  EXPECT_FALSE(defaults->removeAll()) << "what cannot be removed is said";
}

TEST_F(FileUserDefaultsTest,
       FilesAndDirectoriesAreThisUsersAloneWhateverTheUmaskAndWhoeverMadeThem) {
  const auto modes = [this] {
    std::vector<unsigned> found;
    for (const auto& name : {path(), path("defaults.json.lock"), directory_,
                             fs::path(directory_).parent_path().string()}) {
      struct stat status {};
      EXPECT_EQ(stat(name.c_str(), &status), 0) << name;
      found.push_back(status.st_mode & 0777);
    }
    return found;
  };
  for (const mode_t mask : {0000, 0777}) {
    const mode_t before = umask(mask);
    open()->setValue("key", true);
    fake_.runUntilIdle();
    umask(before);
    EXPECT_THAT(modes(), ElementsAre(0600, 0600, 0700, 0700));
    fs::remove_all(fake_.directory.file("new"));
  }
  write("{}");
  fs::permissions(path(), fs::perms::all);
  EXPECT_EQ(open()->value("key"), std::nullopt);
  EXPECT_EQ(fs::status(path()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(FileUserDefaultsTest, ManyValuesAreOneWriteOnTheQueueAndAnEqualOneIsNone) {
  const auto defaults = open();
  for (std::int64_t value = 0; value < 100; ++value) defaults->setValue("key", value);
  EXPECT_EQ(fake_.mainQueue->pending(), 1u);
  EXPECT_FALSE(fs::exists(path()));
  fake_.runUntilIdle();
  struct stat before {};
  ASSERT_EQ(stat(path().c_str(), &before), 0);
  defaults->setValue("key", std::int64_t{99});
  fake_.runUntilIdle();
  struct stat after {};
  stat(path().c_str(), &after);
  EXPECT_EQ(before.st_ino, after.st_ino) << "the file was written for nothing";
}

TEST_F(FileUserDefaultsTest, WhatTwoProcessesSetIsKeptOfBoth) {
  const auto mine = open();
  const auto theirs = open();
  mine->setValue("mine", std::int64_t{1});
  mine->setValue("both", std::int64_t{1});
  fake_.runUntilIdle();
  theirs->setValue("both", std::int64_t{2});
  fake_.runUntilIdle();
  EXPECT_EQ(theirs->integer("mine"), 1);
  mine->setValue("mine", std::int64_t{3});
  fake_.runUntilIdle();
  EXPECT_EQ(mine->integer("both"), 2) << "a write tells what the other one has set";
  EXPECT_EQ(open()->integer("both"), 2);
  EXPECT_EQ(open()->integer("mine"), 3);
}

TEST_F(FileUserDefaultsTest, AWriteWaitsForAnotherProcessWithoutHoldingUpTheQueue) {
  const auto defaults = open();
  defaults->setValue("key", true);
  {
    const DefaultsFile::Lock theirs{DefaultsFile(directory_)};
    ASSERT_FALSE(theirs.isBusy());
    fake_.runUntilIdle();
    EXPECT_FALSE(fs::exists(path()));
  }
  fake_.advance(0.1);
  EXPECT_TRUE(fs::exists(path()));
  const DefaultsFile::Lock dead{DefaultsFile(directory_)};  // never let go
  defaults->setValue("key", false);
  fake_.advance(5);
  EXPECT_EQ(open()->value("key"), DefaultsValue(false));
}

class CorruptFile : public FileUserDefaultsTest,
                    public ::testing::WithParamInterface<const char*> {};

TEST_P(CorruptFile, CountsAsEmptyAndIsSetAside) {
  write(GetParam());
  const auto defaults = open();
  EXPECT_EQ(defaults->value("key"), std::nullopt);
  fake_.runUntilIdle();
  EXPECT_THAT(fake_.console->lines(), ElementsAre(StartsWith("Kifo UserDefaults: ")));
  std::ifstream bad(path("defaults.json.bad"));
  EXPECT_EQ(std::string(std::istreambuf_iterator(bad), {}), GetParam());
  defaults->setValue("key", true);
  fake_.runUntilIdle();
  EXPECT_EQ(open()->value("key"), DefaultsValue(true));
  EXPECT_EQ(fake_.console->lines().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Texts, CorruptFile,
                         ::testing::Values("", "{\"key\":", "[1]", "null", "\xff\xfe", "{} {}"));

TEST_F(FileUserDefaultsTest, AValueOfAnUnknownKindDoesNotSpoilTheOthers) {
  write(R"({"a": null, "b": [1], "c": {"bytes": 1}, "d": "kept", "e": 18446744073709551615})");
  const auto defaults = open();
  EXPECT_EQ(defaults->value("a"), std::nullopt);
  EXPECT_EQ(defaults->value("c"), std::nullopt);
  EXPECT_EQ(defaults->string("d"), "kept");
  EXPECT_EQ(defaults->integer("e"), INT64_MAX);
}

TEST_F(FileUserDefaultsTest, AFullDiskIsSaidOnceAndTheValueIsWrittenWhenThereIsSpace) {
  const auto defaults = open();
  defaults->setValue("before", true);
  fake_.runUntilIdle();
  {
    const FullDisk full;
    for (std::int64_t value = 1; value < 4; ++value) {
      defaults->setValue("during", value);
      fake_.runUntilIdle();
    }
  }
  EXPECT_THAT(fake_.console->lines(), ElementsAre(StartsWith("Kifo UserDefaults: ")));
  EXPECT_EQ(defaults->integer("during"), 3);
  EXPECT_EQ(open()->value("before"), DefaultsValue(true)) << "the old file is whole";
  EXPECT_EQ(open()->value("during"), std::nullopt);
  defaults->setValue("after", true);
  fake_.runUntilIdle();
  EXPECT_EQ(open()->integer("during"), 3);
  EXPECT_EQ(open()->value("after"), DefaultsValue(true));
}

TEST_F(FileUserDefaultsTest, APlaceWhereNothingCanBeMadeCostsALineAndNoValue) {
  std::ofstream(fake_.directory.file("new")) << "a file where a directory should be";
  const auto defaults = open();
  defaults->setValue("key", true);
  fake_.runUntilIdle();
  EXPECT_EQ(defaults->value("key"), DefaultsValue(true));
  EXPECT_THAT(fake_.console->lines(), ElementsAre(StartsWith("Kifo UserDefaults: ")));
}

}  // namespace
}  // namespace kifo::testing
