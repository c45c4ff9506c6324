#include "platform/linux/threads/LinuxSerialQueue.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <fstream>
#include <future>

#include "tests/linux/Pipe.h"
#include "tests/support/HeldUp.h"

namespace kifo::testing {
namespace {

using Seconds = SerialQueue::Duration;

/// Whether the thread waits for its descriptors without a time limit.
bool isParked(int thread) {
  std::ifstream call("/proc/self/task/" + std::to_string(thread) + "/syscall");
  std::string number, descriptors, count, limit;
  call >> number >> descriptors >> count >> limit;
  return number == std::to_string(SYS_ppoll) && limit == "0x0";
}

using LinuxSerialQueueTest = FakesTest;

TEST_F(LinuxSerialQueueTest, StoppingBehindATaskThatDoesNotReturnEndsInItsBoundAndDropsTheRest) {
  bool late = false;
  auto queue = std::make_unique<LinuxSerialQueue>("kifo.test");
  auto obstacle = std::make_unique<HeldUp>(*queue);
  queue->post([&] { late = true; });
  auto waiting = std::async(std::launch::async, [&] { queue->sync([&] { late = true; }); });
  EXPECT_FALSE(queue->stop(Seconds(0.01)));
  waiting.wait();  // a dropped task ends the wait for it
  queue.reset();   // the thread is still in its task
  obstacle.reset();
  EXPECT_FALSE(late);
}

TEST_F(LinuxSerialQueueTest, ATaskMayStopItsOwnQueueOrDestroyIt) {
  std::promise<void> destroyed;
  auto guard = std::shared_ptr<void>(nullptr, [&](void*) { destroyed.set_value(); });
  auto queue = std::make_shared<LinuxSerialQueue>("kifo.test");
  auto* raw = queue.get();
  raw->post([queue = std::move(queue), guard = std::move(guard)]() mutable {
    EXPECT_TRUE(queue->stop(Seconds(10)));
    queue = nullptr;
  });
  EXPECT_EQ(destroyed.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
}

TEST_F(LinuxSerialQueueTest, SeveralThreadsMayStopItAtOnce) {
  LinuxSerialQueue queue("kifo.test");
  std::atomic<int> ran = 0;
  for (int index = 0; index < 100; ++index) queue.post([&] { ++ran; });
  std::atomic<int> succeeded = 0;
  onThreads(4, [&](int) { succeeded += queue.stop(Seconds(20)) ? 1 : 0; });
  EXPECT_EQ(ran, 100);
  EXPECT_EQ(succeeded, 4);
}

TEST_F(LinuxSerialQueueTest, AWatchedDescriptorIsServedBetweenTasksUntilItIsForgotten) {
  LinuxSerialQueue queue("kifo.test");
  Pipe pipe;
  std::promise<void> both;
  std::string received;
  const auto watch = queue.watch(pipe.reading(), [&] {
    EXPECT_TRUE(queue.isCurrent());
    received += pipe.read(1);
    if (received.size() == 2) both.set_value();
  });
  // Tasks that never run out must not starve the descriptor.
  const auto busy = std::make_shared<std::function<void()>>();
  *busy = [&queue, weak = std::weak_ptr(busy)] {
    if (const auto again = weak.lock()) queue.post(*again);
  };
  queue.post(*busy);
  pipe.write('a');
  pipe.write('b');
  EXPECT_EQ(both.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
  queue.sync([&] { *busy = nullptr; });
  queue.unwatch(watch);
  pipe.write('c');
  queue.sync([] {});
  queue.sync([] {});
  queue.sync([&] { EXPECT_EQ(received, "ab"); });
}

TEST_F(LinuxSerialQueueTest, ItParksUntilItIsWokenOnceNothingIsLeftToWaitFor) {
  LinuxSerialQueue queue("kifo.test");
  int thread = 0;
  queue.sync([&] { thread = gettid(); });
  queue.cancel(queue.schedule(Seconds(1000), [] {}));
  const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!isParked(thread) && std::chrono::steady_clock::now() < bound) std::this_thread::yield();
  EXPECT_TRUE(isParked(thread));
}

TEST_F(LinuxSerialQueueTest, WithoutAFreeDescriptorTasksRunAllTheSame) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the address sanitizer needs descriptors of its own";
#endif
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none{0, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  LinuxSerialQueue queue("kifo.test");
  bool ran = false;
  queue.sync([] {});
  queue.sync([&] { ran = true; });
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_TRUE(ran);
}

TEST_F(LinuxSerialQueueTest, TheHostsSignalsAreNotDeliveredToItsThread) {
  LinuxSerialQueue queue("kifo.test");
  queue.sync([] {
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    EXPECT_TRUE(sigismember(&mask, SIGINT) && sigismember(&mask, SIGPIPE));
    char name[16];
    pthread_getname_np(pthread_self(), name, sizeof name);
    EXPECT_STREQ(name, "kifo.test");
  });
}

}  // namespace
}  // namespace kifo::testing
