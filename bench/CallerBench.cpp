#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "bench/BenchHost.h"
#include "bench/Benches.h"
#include "bench/Table.h"

namespace kifo::bench {
namespace {

constexpr int kEvents = 2000;
constexpr int kRounds = 5;
constexpr auto kPause = std::chrono::microseconds(500);

double microsecondsOf(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin)
      .count();
}

/// What any SDK must do at the least: write the event down as JSON.
void writeDown(const EventParameters& parameters) {
  volatile auto size = jsonFromValue(parameters).size();
  (void)size;
}

struct Timed {
  Samples work;
  Samples floor;  ///< Of the same threads, alternately: the machine's load affects both.
};

Timed timed(int threads, const std::function<void(EventParameters)>& work) {
  Timed all;
  std::mutex mutex;
  std::vector<std::thread> running;
  for (int t = 0; t < threads; ++t) {
    running.emplace_back([&] {
      Timed own;
      for (int i = 0; i < kEvents / threads; ++i) {
        for (const bool isFloor : {true, false}) {
          EventParameters parameters = BenchHost::parameters();
          const auto now = [&] { isFloor ? writeDown(parameters) : work(std::move(parameters)); };
          (isFloor ? own.floor : own.work).add(microsecondsOf(now));
          // As a host sends: not in one burst, so that the queues behind do not set the pace.
          std::this_thread::sleep_for(kPause * threads / 2);
        }
      }
      const std::lock_guard lock(mutex);
      all.work.add(own.work);
      all.floor.add(own.floor);
    });
  }
  for (auto& thread : running) thread.join();
  return all;
}

/// What any SDK that works behind the caller's back must do besides: wake a sleeping thread.
Samples wakeSamples() {
  const int descriptor = eventfd(0, EFD_NONBLOCK);
  std::atomic<bool> ended = false;
  std::thread sleeper([&] {
    while (!ended) {
      pollfd polled{descriptor, POLLIN, 0};
      poll(&polled, 1, -1);
      eventfd_t count = 0;
      eventfd_read(descriptor, &count);
    }
  });
  const Timed samples = timed(1, [&](const EventParameters&) { eventfd_write(descriptor, 1); });
  ended = true;
  eventfd_write(descriptor, 1);
  sleeper.join();
  close(descriptor);
  return samples.work;
}

std::string quantiles(const Samples& samples) {
  return "median " + microseconds(samples.median()) + ", 99 % " +
         microseconds(samples.quantile(0.99));
}

void measure(bool online, int depth, int threads) {
  const BenchServer server(BenchServer::Manner::instant);
  BenchHost host(server);
  host.start();
  host.setOnline(online);
  fillTable(host.databasePath(), depth, server.listenerUri());
  const Timed samples = timed(threads, [](EventParameters parameters) {
    KifoEventManager::sendEvent("bench", std::nullopt, std::move(parameters));
  });
  const double median = samples.work.median() / samples.floor.median();
  const double tail = samples.work.quantile(0.99) / samples.floor.quantile(0.99);
  row(std::string(online ? "online" : "offline") + ", " + std::to_string(threads) + " thread(s), " +
          std::to_string(depth) + " rows stored",
      quantiles(samples.work),
      ratio(median) + " and " + ratio(tail) + " x floor (" + quantiles(samples.floor) +
          "); wanted 15 and 60 µs",
      {{"median, x floor", median}, {"99 %, x floor", tail}});
}

Samples sendSamples(const BenchServer& server, bool canBeWatched) {
  BenchHost host(server);
  host.start();
  if (canBeWatched) Kifo::enableWatching();
  return timed(1,
               [](EventParameters parameters) {
                 KifoEventManager::sendEvent("bench", std::nullopt, std::move(parameters));
               })
      .work;
}

/// Sessions with and without alternately, so that the machine's load affects both alike.
void measureWatching() {
  const BenchServer server(BenchServer::Manner::instant);
  Samples without;
  Samples with;
  for (int round = 0; round < kRounds; ++round) {
    without.add(sendSamples(server, false));
    with.add(sendSamples(server, true));
  }
  row("online, 1 thread(s), watching is enabled and nobody looks", quantiles(with),
      ratio(with.median() / without.median()) + " x without (" + quantiles(without) +
          "); wanted 1.01");
}

}  // namespace

void callerBench() {
  section("sendEvent with 20 parameters, on the caller's thread; the floor: the 20 as JSON text");
  row("for comparison: waking a sleeping thread", quantiles(wakeSamples()), "");
  for (const bool online : {false, true}) {
    for (const int depth : {0, 10000}) {
      for (const int threads : {1, 4}) measure(online, depth, threads);
    }
  }
  measureWatching();
}

}  // namespace kifo::bench
