#include <atomic>
#include <future>
#include <stdexcept>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "platform/linux/threads/LinuxSerialQueue.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

using Flags = KifoReachability::Flags;

class ReachabilityManagerTest : public ::testing::Test {
 protected:
  NetworkManager::NetworkStatusCallback record() {
    return [this](bool online) {
      EXPECT_TRUE(platform_.mainQueue->isCurrent());
      told_.push_back(online);
    };
  }

  NetworkManager::NetworkStatusCallback recordReading() {
    return [this](bool online) { read_.push_back(online); };
  }

  void change(std::uint32_t flags) {
    platform_.reachability->change(flags);
    platform_.runUntilIdle();
  }

  testing::InstalledFakePlatform platform_;
  const std::shared_ptr<NetworkManager> manager_ = std::make_shared<NetworkManager>();
  std::vector<bool> told_;
  std::vector<bool> read_;
};

TEST_F(ReachabilityManagerTest, StoppedItTellsNothingMoreAndCanStartAgain) {
  manager_->startMonitoring(record(), recordReading());
  platform_.reachability->change(Flags::reachable);
  manager_->stopMonitoring();
  platform_.runUntilIdle();
  EXPECT_THAT(told_, IsEmpty());
  EXPECT_THAT(read_, ElementsAre(false)) << "of the start";
  EXPECT_EQ(manager_->flags(), std::nullopt);
  EXPECT_EQ(platform_.reachability->listening(), 0U);
  EXPECT_EQ(platform_.reachability->sources(), 0U);
  manager_->startMonitoring(record());
  platform_.runUntilIdle();
  EXPECT_THAT(told_, ElementsAre(true));
}

TEST_F(ReachabilityManagerTest, WhereNothingCanBeWatchedNothingIsTold) {
  platform_.reachability->failCreate(1);
  manager_->startMonitoring(record());
  change(Flags::reachable);
  EXPECT_EQ(manager_->flags(), std::nullopt);
  platform_.reachability->failCreate(0);
  platform_.reachability->failFlags(1);
  manager_->startMonitoring(record());
  change(Flags::reachable);
  EXPECT_EQ(manager_->flags(), std::nullopt);
  EXPECT_THAT(told_, IsEmpty());
  EXPECT_THAT(platform_.console->lines(), IsEmpty()) << "such errors are silent";
}

TEST_F(ReachabilityManagerTest, ACallbackMayThrowAndMayStartAgain) {
  manager_->startMonitoring([this](bool) {
    manager_->startMonitoring(record());
    throw std::runtime_error("a host's mistake");
  });
  platform_.runUntilIdle();
  EXPECT_THAT(told_, ElementsAre(false));
  EXPECT_EQ(platform_.reachability->sources(), 1U);
  change(Flags::reachable);
  change(Flags::reachable);
  EXPECT_THAT(told_, ElementsAre(false, true));
}

TEST_F(ReachabilityManagerTest, AnyWatchersNoteCountsAndAnythingElseIsFatal) {
  platform_.reachability->setFlags(Flags::reachable);
  manager_->startMonitoring(record(), recordReading());
  EXPECT_EQ(manager_->flags(), Flags::reachable) << "known as soon as monitoring has started";
  EXPECT_THAT(read_, ElementsAre(true)) << "before the main queue gets to it";
  platform_.runUntilIdle();
  EXPECT_EQ(read_.size(), 3U) << "a change is read when it comes, is posted and is handled";
  platform_.reachability->setFlags(0);
  const auto other =
      KifoReachability::create({.targetQueue = nullptr, .notificationQueue = platform_.mainQueue})
          .reachability;
  other->refreshFlags();
  platform_.runUntilIdle();
  EXPECT_THAT(told_, ElementsAre(true, false));
  EXPECT_EQ(testing::last(read_), false);

  setFatalErrorHandler(
      [](std::string_view message) { throw std::logic_error(std::string(message)); });
  EXPECT_THROW(manager_->reachabilityChanged({KifoReachabilityChangedNotification, {}}),
               std::logic_error);
  EXPECT_THROW(manager_->reachabilityChanged({KifoReachabilityChangedNotification, 7}),
               std::logic_error);
  setFatalErrorHandler(nullptr);
}

/// For the thread sanitizer to judge.
TEST(ReachabilityRaceTest, AnyThreadMayStartStopReadAndGoWhileTheNetworkChanges) {
  constexpr int rounds = 200;
  testing::FakePlatform fake;
  Platform platform = fake.platform();
  platform.mainQueue = std::make_shared<LinuxSerialQueue>("main");
  platform.reachabilityQueue = std::make_shared<LinuxSerialQueue>("reachability");
  Platform::install(platform);
  const auto manager = std::make_shared<NetworkManager>();
  std::atomic<int> told = 0;
  const auto start = [&](int) { manager->startMonitoring([&](bool) { ++told; }); };
  const std::function<void(int)> works[] = {
      start,
      start,
      [&](int) { manager->stopMonitoring(); },
      [&](int) { networkCapability(manager->flags()); },
      [&](int round) { fake.reachability->change(round % 2 == 0 ? 0 : 2); },
      [](int) {
        // Without a notification queue its changes are handled where they are seen.
        const auto watcher = KifoReachability::create({}).reachability;
        watcher->setWhenReachable([](KifoReachability& self) { self.stopNotifier(); });
        watcher->startNotifier();
      }};
  testing::onThreads(6, [&](int thread) {
    for (int round = 0; round < rounds; ++round) works[thread](round);
  });
  manager->stopMonitoring();
  const auto last = std::make_shared<std::promise<bool>>();
  fake.reachability->setFlags(KifoReachability::Flags::reachable);
  manager->startMonitoring([last, once = std::make_shared<std::atomic<bool>>(false)](bool online) {
    if (!once->exchange(true)) last->set_value(online);
  });
  EXPECT_TRUE(last->get_future().get());
  EXPECT_EQ(fake.reachability->listening(), 1U);
  manager->stopMonitoring();
  EXPECT_TRUE(platform.mainQueue->stop(SerialQueue::Duration(10)));
  EXPECT_TRUE(platform.reachabilityQueue->stop(SerialQueue::Duration(10)));
  EXPECT_EQ(fake.reachability->sources(), 0U);
  Platform::release();
}

}  // namespace
}  // namespace kifo
