#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "bench/BenchHost.h"
#include "bench/Benches.h"
#include "bench/Table.h"

namespace kifo::bench {
namespace {

constexpr int kEvents = 2000;
constexpr auto kPause = std::chrono::microseconds(500);

template <class Work>
Samples timed(int threads, const Work& work) {
  Samples all;
  std::mutex mutex;
  std::vector<std::thread> running;
  for (int t = 0; t < threads; ++t) {
    running.emplace_back([&] {
      Samples own;
      for (int i = 0; i < kEvents / threads; ++i) {
        EventParameters parameters = BenchHost::parameters();
        const auto begin = std::chrono::steady_clock::now();
        work(std::move(parameters));
        own.add(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin)
                    .count());
        // As a host sends: not in one burst, so that the queues behind do not set the pace.
        std::this_thread::sleep_for(kPause * threads);
      }
      const std::lock_guard lock(mutex);
      all.add(own);
    });
  }
  for (auto& thread : running) thread.join();
  return all;
}

/// What any SDK must do on the caller's thread at the least: write the event down as JSON.
double floorMedian() {
  return timed(1,
               [](EventParameters parameters) {
                 volatile auto size = nlohmann::json(std::move(parameters)).dump().size();
                 (void)size;
               })
      .median();
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
  const Samples samples = timed(1, [&](const EventParameters&) { eventfd_write(descriptor, 1); });
  ended = true;
  eventfd_write(descriptor, 1);
  sleeper.join();
  close(descriptor);
  return samples;
}

void measure(bool online, int depth, int threads, double floor) {
  const BenchServer server(BenchServer::Manner::instant);
  BenchHost host(server);
  host.start();
  host.setOnline(online);
  fillTable(host.databasePath(), depth, server.listenerUri());
  const Samples samples = timed(threads, [](EventParameters parameters) {
    KifoEventManager::sendEvent("bench", std::nullopt, std::move(parameters));
  });
  row(std::string(online ? "online" : "offline") + ", " + std::to_string(threads) + " thread(s), " +
          std::to_string(depth) + " rows stored",
      "median " + microseconds(samples.median()) + ", 99 % " + microseconds(samples.quantile(0.99)),
      "median " + ratio(samples.median() / floor) + " x floor; wanted 15 and 60 µs");
}

}  // namespace

void callerBench() {
  section("sendEvent with 20 parameters, on the caller's thread");
  const double floor = floorMedian();
  row("floor: the 20 parameters as JSON text", "median " + microseconds(floor), "");
  const Samples wake = wakeSamples();
  row("floor: waking a sleeping thread",
      "median " + microseconds(wake.median()) + ", 99 % " + microseconds(wake.quantile(0.99)), "");
  for (const bool online : {false, true}) {
    for (const int depth : {0, 10000}) {
      for (const int threads : {1, 4}) measure(online, depth, threads, floor);
    }
  }
}

}  // namespace kifo::bench
