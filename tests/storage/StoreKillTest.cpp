#include <gtest/gtest.h>

#include <filesystem>
#include <set>

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

}  // namespace
}  // namespace kifo::testing
