#include <gtest/gtest.h>

#include <filesystem>

#include "testing/ChildProgram.h"
#include "testing/TemporaryDirectory.h"
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

TEST_F(StoreKillTest, AHostThatIsKilledASecondIntoAThousandEventsASecondLeavesWholeRows) {
  child_.start({KIFO_STORE_CHILD, "events", directory_.path()});
  ASSERT_TRUE(child_.awaitOutput(1000));
  child_.kill();
  expectSoundFile();
  const int stored = std::stoi(rows("select count(*) from KifoLog").at(0));
  RecordProperty("stored", stored);
  EXPECT_GT(stored, 0);
}

TEST_F(StoreKillTest, AHostThatDiesWithinAGroupKeepsTheGroupsBeforeAndNothingOfThisOne) {
  child_.start({KIFO_STORE_CHILD, "group", directory_.path()});
  EXPECT_EQ(child_.wait(), std::nullopt) << "it kills itself";
  EXPECT_GT(std::filesystem::file_size(directory_.file("KifoLog.db-journal")), 0U)
      << "pages had reached the file";
  expectSoundFile();
  EXPECT_EQ(rows("select count(*) from KifoLog"), Lines{"10"});
}

}  // namespace
}  // namespace kifo::testing
