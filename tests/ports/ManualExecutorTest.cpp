#include "testing/ManualExecutor.h"

#include <string>
#include <thread>
#include <vector>

#include "testing/FakePlatform.h"

namespace kifo::testing {
namespace {

using ::testing::ElementsAre;
using Seconds = SerialQueue::Duration;

class ManualExecutorTest : public ::testing::Test {
 protected:
  SerialQueue::Task note(std::string text) {
    return [this, text = std::move(text)] { notes_.push_back(text); };
  }

  InstalledFakePlatform fake_;
  std::vector<std::string> notes_;
};

TEST_F(ManualExecutorTest, RunsTheTasksOfAllQueuesInTheOrderInWhichTheyBecomeDue) {
  fake_.mainQueue->schedule(Seconds(2), note("at 2"));
  fake_.answerQueue->schedule(Seconds(1), note("at 1"));
  fake_.mainQueue->schedule(Seconds(1), note("at 1, later"));
  fake_.mainQueue->post(note("now"));
  fake_.runUntilIdle();
  EXPECT_THAT(notes_, ElementsAre("now"));
  fake_.advance(1.5);
  EXPECT_THAT(notes_, ElementsAre("now", "at 1", "at 1, later"));
  fake_.advance(0.5);
  EXPECT_EQ(notes_.back(), "at 2");
}

TEST_F(ManualExecutorTest, SyncRunsWhatStandsBeforeItOnItsOwnQueueOnly) {
  fake_.answerQueue->post(note("other queue"));
  fake_.mainQueue->post(note("before"));
  fake_.mainQueue->sync(note("synced"));
  EXPECT_THAT(notes_, ElementsAre("before", "synced"));
  EXPECT_EQ(fake_.answerQueue->pending(), 1u);
}

TEST_F(ManualExecutorTest, ASyncFromAnotherThreadWaitsForTheTaskThatRuns) {
  std::thread other;
  fake_.mainQueue->post([&] {
    other = std::thread([&] { fake_.mainQueue->sync(note("other thread")); });
    notes_.push_back("first");
  });
  fake_.runUntilIdle();
  other.join();
  EXPECT_THAT(notes_, ElementsAre("first", "other thread"));
}

}  // namespace
}  // namespace kifo::testing
