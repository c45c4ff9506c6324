// What every reachability service promises, asked of the kernel's, the scripted one and the null
// one.
#include <chrono>
#include <future>
#include <thread>

#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"
#include "platform/linux/reachability/NetlinkReachability.h"
#include "platform/linux/threads/LinuxSerialQueue.h"
#include "testing/FakeReachability.h"
#include "testing/NetworkNamespace.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

using Queue = std::shared_ptr<LinuxSerialQueue>;

constexpr std::chrono::seconds kBound{20};

struct ScriptedBench {
  explicit ScriptedBench(const Queue&) {}
  static std::string whyNot() { return {}; }
  ReachabilityService& service() { return *fake; }
  void connect() { fake->change(ReachabilityFlags::reachable); }

  const std::shared_ptr<FakeReachability> fake = std::make_shared<FakeReachability>();
};

struct KernelBench {
  explicit KernelBench(const Queue& queue) : netlink(queue) {
    host.connect("up0", router, "host0");
    host.ip("addr add 10.7.0.2/24 dev up0");
    inside.emplace(host);
  }
  static std::string whyNot() { return NetworkNamespace::whyNot(); }
  ReachabilityService& service() { return netlink; }
  void connect() { host.ip("route replace default via 10.7.0.1"); }

  NetworkNamespace host;
  NetworkNamespace router;
  std::optional<InNamespace> inside;
  NetlinkReachabilityService netlink;
};

template <class Bench>
class ReachabilityContract : public ::testing::Test {
 protected:
  using Source = std::unique_ptr<ReachabilitySource>;

  void SetUp() override {
    if (!Bench::whyNot().empty()) GTEST_SKIP() << Bench::whyNot();
    bench_ = std::make_unique<Bench>(queue_);
  }
  void TearDown() override { queue_->stop(SerialQueue::Duration(10)); }

  Source source() {
    int error = -1;
    Source made = bench_->service().createWithAddress({16, 2}, error);
    EXPECT_TRUE(made);
    EXPECT_EQ(error, 0);
    return made;
  }

  /// Makes the network reachable and waits until a source that was started last was told so. What
  /// another source had to tell has been told by then.
  void connectAndAwaitWitness() {
    const auto told = std::make_shared<std::promise<void>>();
    const Source witness = source();
    witness->setCallback(
        [told, once = false]() mutable {
          if (!std::exchange(once, true)) told->set_value();
        },
        {});
    witness->setDispatchQueue(queue_);
    bench_->connect();
    ASSERT_EQ(told->get_future().wait_for(kBound), std::future_status::ready);
  }

  const Queue queue_ = std::make_shared<LinuxSerialQueue>("reachability");
  std::unique_ptr<Bench> bench_;
};

using Benches = ::testing::Types<ScriptedBench, KernelBench>;
TYPED_TEST_SUITE(ReachabilityContract, Benches);

TYPED_TEST(ReachabilityContract, TellsOfAChangeOnTheChosenQueueAndReadsOnAnyThread) {
  const auto elsewhere = std::make_shared<LinuxSerialQueue>("elsewhere");
  const auto source = this->source();
  std::uint32_t flags = ~0U;
  EXPECT_EQ(source->flags(flags), 0);
  EXPECT_EQ(flags, 0U);
  std::promise<bool> told;
  source->setCallback(
      [&, once = false]() mutable {
        if (!std::exchange(once, true)) told.set_value(elsewhere->isCurrent());
      },
      [] { return std::string("the watcher"); });
  source->setDispatchQueue(elsewhere);
  this->bench_->connect();
  auto isThere = told.get_future();
  ASSERT_EQ(isThere.wait_for(kBound), std::future_status::ready);
  EXPECT_TRUE(isThere.get());
  std::thread([&] { EXPECT_EQ(source->flags(flags), 0); }).join();
  EXPECT_EQ(flags & ReachabilityFlags::reachable, ReachabilityFlags::reachable);
  source->setDispatchQueue(nullptr);
  source->setCallback({}, {});
  EXPECT_TRUE(elsewhere->stop(SerialQueue::Duration(10)));  // a call may have been under way
}

TYPED_TEST(ReachabilityContract, WhatWasRemovedOrNeverGivenIsNotCalled) {
  const auto calls = std::make_shared<std::vector<std::string>>();
  const auto note = [calls](const char* who) { return [calls, who] { calls->push_back(who); }; };
  const auto withoutQueue = this->source();
  withoutQueue->setCallback(note("without a queue"), {});
  const auto withoutCallback = this->source();
  withoutCallback->setDispatchQueue(this->queue_);
  const auto removed = this->source();
  removed->setCallback(note("removed"), {});
  removed->setDispatchQueue(this->queue_);
  removed->setCallback({}, {});
  const auto stopped = this->source();
  stopped->setCallback(note("stopped"), {});
  stopped->setDispatchQueue(this->queue_);
  stopped->setDispatchQueue(nullptr);
  auto gone = this->source();
  gone->setCallback(note("gone"), {});
  gone->setDispatchQueue(this->queue_);
  gone.reset();
  this->connectAndAwaitWitness();
  this->queue_->sync([&] { EXPECT_THAT(*calls, IsEmpty()); });
}

TEST(NoReachability, ThereIsNoSourceButAReason) {
  int error = 0;
  EXPECT_EQ(nullPlatform().reachability->createWithAddress({16, 2}, error), nullptr);
  EXPECT_NE(error, 0);
}

}  // namespace
}  // namespace kifo::testing
