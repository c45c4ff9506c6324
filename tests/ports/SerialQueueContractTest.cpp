// What every serial queue promises, asked of the one with a thread and of the manual one.
#include <atomic>
#include <future>
#include <stdexcept>
#include <thread>

#include "platform/linux/threads/LinuxSerialQueue.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

using Seconds = SerialQueue::Duration;

struct RealQueue {
  std::shared_ptr<SerialQueue> queue = std::make_shared<LinuxSerialQueue>("kifo.test");
  template <class T>
  bool await(std::future<T>& future) {
    return future.wait_for(std::chrono::seconds(20)) == std::future_status::ready;
  }
};

struct ManualQueue {
  std::shared_ptr<FakeSerialQueue> queue = std::make_shared<FakeSerialQueue>();
  template <class T>
  bool await(std::future<T>& future) {
    queue->advance(20);
    return future.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  }
};

template <class Bench>
class SerialQueueContract : public FakesTest {
 protected:
  SerialQueue& queue() { return *bench_.queue; }
  SerialQueue::Task note(int value) {
    return [this, value] { notes_.push_back(value); };
  }
  /// Runs everything posted so far.
  void settle() {
    queue().sync([] {});
  }
  /// Posts what sets the promise after `delay` and waits for it.
  bool pass(double delay) {
    std::promise<void> passed;
    auto future = passed.get_future();
    queue().schedule(Seconds(delay), [&] { passed.set_value(); });
    return bench_.await(future);
  }

  Bench bench_;
  std::vector<int> notes_;  // touched by tasks, read after settle() or stop()
};

using Benches = ::testing::Types<RealQueue, ManualQueue>;
TYPED_TEST_SUITE(SerialQueueContract, Benches);

TYPED_TEST(SerialQueueContract, ATaskPostedFromATaskRunsAfterItAndKnowsItsQueue) {
  this->queue().post([this] {
    this->queue().post(this->note(2));
    this->queue().sync(this->note(1));  // at once: it cannot wait for itself
    if (this->queue().isCurrent()) this->note(0)();
  });
  this->settle();
  this->settle();
  EXPECT_THAT(this->notes_, ElementsAre(1, 0, 2));
  EXPECT_FALSE(this->queue().isCurrent());
}

TYPED_TEST(SerialQueueContract, AnExceptionIsPrintedAndTheNextTaskRuns) {
  this->queue().post([] { throw std::runtime_error("of the task"); });
  this->queue().post([] { throw 7; });
  this->queue().sync([] { throw std::runtime_error("of the synced task"); });
  this->queue().post(this->note(1));
  this->settle();
  EXPECT_THAT(this->notes_, ElementsAre(1));
  EXPECT_THAT(this->fake_.console->lines(),
              ElementsAre(::testing::MatchesRegex("Kifo SerialQueue: .*: of the task"),
                          StartsWith("Kifo SerialQueue: "),
                          ::testing::MatchesRegex("Kifo SerialQueue: .*: of the synced task")));
}

TYPED_TEST(SerialQueueContract, TimersRunInTheOrderInWhichTheyFallDue) {
  this->queue().schedule(Seconds(0.03), this->note(3));
  this->queue().schedule(Seconds(0.01), this->note(1));
  this->queue().schedule(Seconds(0.02), this->note(2));
  this->queue().schedule(Seconds(-1), this->note(0));
  ASSERT_TRUE(this->pass(0.04));
  EXPECT_THAT(this->notes_, ElementsAre(0, 1, 2, 3));
}

TYPED_TEST(SerialQueueContract, ARepeatingTimerRunsUntilItIsCancelledFromWithin) {
  std::promise<void> third;
  auto future = third.get_future();
  SerialQueue::Timer timer = 0;
  this->queue().sync([&] {
    timer = this->queue().schedule(
        Seconds(0.001),
        [&] {
          this->notes_.push_back(1);
          if (this->notes_.size() < 3) return;
          this->queue().cancel(timer);
          third.set_value();
        },
        true);
  });
  ASSERT_TRUE(this->bench_.await(future));
  ASSERT_TRUE(this->pass(0.02));
  EXPECT_EQ(this->notes_.size(), 3u);
}

TYPED_TEST(SerialQueueContract, ACancelledTimerNeverRunsAndLetsGoOfWhatItHeld) {
  auto held = std::make_shared<int>(0);
  const auto timer = this->queue().schedule(Seconds(0.01), [held] { ++*held; });
  EXPECT_NE(timer, 0u);
  this->queue().cancel(timer);
  this->queue().cancel(timer);
  this->queue().cancel(12345);
  EXPECT_EQ(held.use_count(), 1);
  ASSERT_TRUE(this->pass(0.02));
  EXPECT_EQ(*held, 0);
}

TYPED_TEST(SerialQueueContract, ADueTimerCanStillBeCancelledByTheTaskBeforeIt) {
  SerialQueue::Timer timer = 0;
  this->queue().sync([&] {
    this->queue().post([&] { this->queue().cancel(timer); });
    timer = this->queue().schedule(Seconds(0), this->note(1));
  });
  this->settle();
  this->settle();
  EXPECT_THAT(this->notes_, ElementsAre());
}

TYPED_TEST(SerialQueueContract, StoppingRunsWhatIsQueuedAndDropsWhatIsNotDueYet) {
  auto held = std::make_shared<int>(0);
  this->queue().schedule(Seconds(1000), [held] { ++*held; });
  for (int value = 0; value < 10; ++value) this->queue().post(this->note(value));
  EXPECT_TRUE(this->queue().stop(Seconds(20)));
  EXPECT_EQ(this->notes_.size(), 10u);
  EXPECT_EQ(held.use_count(), 1);
  this->queue().post(this->note(10));
  this->queue().sync(this->note(11));
  EXPECT_EQ(this->queue().schedule(Seconds(0), this->note(12)), 0u);
  EXPECT_TRUE(this->queue().stop(Seconds(0))) << "a second stop has nothing to wait for";
  EXPECT_TRUE(TypeParam().queue->stop(Seconds(0))) << "nor has one that was never used";
  EXPECT_EQ(this->notes_.size(), 10u);
}

TYPED_TEST(SerialQueueContract, WhatIsPostedWhileItStopsIsRunOrDroppedAndNeverKept) {
  const auto held = std::make_shared<std::atomic<int>>(0);
  std::atomic<int> posted = 0;
  std::vector<std::thread> threads;
  for (int index = 0; index < 4; ++index) {
    threads.emplace_back([&] {
      for (int value = 0; value < 500; ++value) {
        this->queue().post([held] { ++*held; });
        ++posted;
      }
    });
  }
  while (posted < 100) std::this_thread::yield();
  const int before = posted;
  this->queue().stop(Seconds(20));
  const int ran = *held;
  for (auto& thread : threads) thread.join();
  EXPECT_GE(ran, before);
  EXPECT_EQ(*held, ran) << "nothing runs once it has stopped";
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(SerialQueueContract, ManyThreadsLoseNothingAndEachKeepsItsOrder) {
  constexpr int kThreads = 4;
  constexpr int kEach = 500;
  std::vector<std::vector<int>> seen(kThreads);
  onThreads(kThreads, [&](int index) {
    for (int value = 0; value < kEach; ++value) {
      this->queue().post([&, index, value] { seen[index].push_back(value); });
    }
  });
  this->settle();
  for (const auto& values : seen) {
    EXPECT_EQ(values.size(), static_cast<std::size_t>(kEach));
    EXPECT_TRUE(std::ranges::is_sorted(values));
  }
}

/// What the manual queues of one executor do together.
class ManualExecutorTest : public FakesTest {
 protected:
  SerialQueue::Task note(std::string text) {
    return [this, text = std::move(text)] { notes_.push_back(text); };
  }

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
