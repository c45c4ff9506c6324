// Started, stopped, read and told of changes all at once: for the thread sanitizer to judge.
#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "platform/linux/threads/LinuxSerialQueue.h"
#include "testing/FakePlatform.h"

namespace kifo {
namespace {

constexpr int kRounds = 200;

TEST(ReachabilityRaceTest, AnyThreadMayStartStopReadAndGoWhileTheNetworkChanges) {
  testing::FakePlatform fake;
  Platform platform = fake.platform();
  platform.mainQueue = std::make_shared<LinuxSerialQueue>("main");
  platform.reachabilityQueue = std::make_shared<LinuxSerialQueue>("reachability");
  Platform::install(platform);
  const auto manager = std::make_shared<NetworkManager>();
  std::atomic<int> told = 0;
  const auto start = [&] {
    for (int i = 0; i < kRounds; ++i) manager->startMonitoring([&](bool) { ++told; });
  };
  std::vector<std::thread> threads;
  threads.emplace_back(start);
  threads.emplace_back(start);
  threads.emplace_back([&] {
    for (int i = 0; i < kRounds; ++i) manager->stopMonitoring();
  });
  threads.emplace_back([&] {
    for (int i = 0; i < kRounds; ++i) networkCapability(manager->flags());
  });
  threads.emplace_back([&] {
    for (std::uint32_t i = 0; i < kRounds; ++i) fake.reachability->change(i % 2 * 2);
  });
  threads.emplace_back([&] {
    for (int i = 0; i < kRounds; ++i) {
      // Without a notification queue its changes are handled where they are seen.
      const auto watcher = KifoReachability::create({}).reachability;
      watcher->setWhenReachable([](KifoReachability& self) { self.stopNotifier(); });
      watcher->startNotifier();
    }
  });
  for (auto& thread : threads) thread.join();

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
