#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <thread>
#include <vector>

#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"
#include "Kifo_iOS_Common_Kit/storage/LogTable.h"
#include "bench/BenchHost.h"
#include "bench/Benches.h"
#include "bench/Table.h"

namespace kifo::bench {
namespace {

constexpr int kRounds = 500;
constexpr int kRoundsAtOnce = 50;  // of one depth, before the other
constexpr auto kCount = "select count(*) from KifoLog where ISSYNC_SUCCESS = 0 and TRYCOUNT = 0";

std::string requestId(int round) {
  char id[40];
  std::snprintf(id, sizeof id, "%08X-1111-4000-8000-%012X",
                0x85EBCA6BU * static_cast<unsigned>(round), static_cast<unsigned>(round));
  return id;
}

/// Opens, runs one statement and closes, as the store does for each.
void byHand(const std::string& path, const std::string& statement) {
  sqlite3* database = nullptr;
  sqlite3_stmt* prepared = nullptr;
  sqlite3_open(path.c_str(), &database);
  sqlite3_busy_timeout(database, 5000);
  sqlite3_prepare_v2(database, statement.c_str(), -1, &prepared, nullptr);
  while (sqlite3_step(prepared) == SQLITE_ROW) sqlite3_column_int(prepared, 0);
  sqlite3_finalize(prepared);
  sqlite3_close(database);
}

double took(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin)
      .count();
}

RequestTexts textsOf(const std::string& url, EventParameters parameters) {
  return {{url, true}, {std::make_shared<const EventParameters>(std::move(parameters))}};
}

KifoLog sample(const RequestTexts& texts, const std::string& id) {
  return {0, texts.json(), texts.url(), "POST", 1, 0, 1, id};
}

std::string insert(const KifoLog& log) {
  return "INSERT INTO KifoLog (PARAMETERS, REQUEST_ID, URL, DATE, ISSYNC, TRYCOUNT, HTTPMETHOD, "
         "ISSYNC_SUCCESS) VALUES ('" +
         log._paramaters + "', '" + log._requestId + "', '" + log._url + "', 1, 1, 0, 'POST', 0)";
}

/// A table without our indexes, as deep as the store's own, for the statements by hand.
void makeBareTable(const std::string& path, int depth, const std::string& url) {
  sqlite3* database = nullptr;
  sqlite3_open(path.c_str(), &database);
  sqlite3_busy_timeout(database, 5000);
  sqlite3_exec(database, LogTable::kCreate, nullptr, nullptr, nullptr);
  sqlite3_close(database);
  fillTable(path, depth, url);
}

/// A table of one depth: the store's own, and the one for the statements by hand.
struct Depth {
  Depth(const BenchHost& host, int rows, const std::string& url)
      : ours(host.directory() + "/ours-" + std::to_string(rows)),
        bare(host.directory() + "/bare-" + std::to_string(rows)) {
    std::filesystem::copy_file(host.databasePath(), ours);
    fillTable(ours, rows, url);
    makeBareTable(bare, rows, url);
  }

  std::string ours;
  std::string bare;
  Samples ourCosts;
  Samples handCosts;
};

void store(const KifoLog& log) {
  DataManager().cacheLog(1000000, log._requestId, [&log] { return log; });
  Platform::current()->mainQueue->sync([] {});
}

void storeByHand(const std::string& path, const KifoLog& log) {
  byHand(path, kCount);
  byHand(path, insert(log));
  byHand(path, kCount);
}

/// Ours and by hand alternately, so that a noisy moment affects both; some at once, because a deep
/// table's scan by hand leaves the processor's caches to nobody else.
void measure(Depth& depth, const RequestTexts& texts, int first) {
  store(
      sample(texts, requestId(first)));  // the file is another one: the store counts its rows anew
  for (int round = first + 1; round < first + kRoundsAtOnce; ++round) {
    const KifoLog log = sample(texts, requestId(round));
    depth.ourCosts.add(took([&] { store(log); }));
  }
  for (int round = first; round < first + kRoundsAtOnce; ++round) {
    const KifoLog log = sample(texts, requestId(round));
    depth.handCosts.add(took([&] { storeByHand(depth.bare, log); }));
  }
}

void measure(const BenchHost& host, std::initializer_list<Depth*> depths,
             const RequestTexts& texts) {
  for (int first = 0; first < kRounds; first += kRoundsAtOnce) {
    for (Depth* depth : depths) {
      std::filesystem::rename(depth->ours, host.databasePath());
      measure(*depth, texts, first);
      std::filesystem::rename(host.databasePath(), depth->ours);
    }
  }
}

// Copies that wait together ----------------------------------------------------------------------

constexpr int kBurst = 5000;

/// What writing a record of a stored copy's size and syncing it costs here: the disk's own share.
double syncCost(const std::string& path) {
  Samples samples;
  const int file = open(path.c_str(), O_CREAT | O_WRONLY, 0600);
  const std::string page(4096, 'x');
  for (int i = 0; i < 200; ++i) {
    samples.add(took([&] {
      if (pwrite(file, page.data(), page.size(), i * 4096) < 0 || fdatasync(file) != 0) return;
    }));
  }
  close(file);
  return samples.median();
}

/// A copy as an event's request makes it: its texts are written on the main queue.
void storeEvent(const std::string& url, const std::string& id,
                std::function<void(CopyOutcome)> copied) {
  DataManager().cacheLog(
      1000000, id,
      [url, id, parameters = BenchHost::parameters()]() mutable {
        const RequestTexts texts = textsOf(url, std::move(parameters));
        return sample(texts, id);
      },
      std::move(copied));
}

void burst(const BenchHost& host, const std::string& url) {
  row("for comparison: one page written and synced",
      microseconds(syncCost(host.directory() + "/page")), "");
  const std::string bare = host.directory() + "/bare-burst";
  makeBareTable(bare, 0, url);
  const double hand = took([&] {
    for (int i = 0; i < kBurst / 10; ++i) {
      const RequestTexts texts = textsOf(url, BenchHost::parameters());
      storeByHand(bare, sample(texts, requestId(i)));
    }
  });
  int stored = 0;
  const double ours = took([&] {
    for (int i = 0; i < kBurst; ++i) {
      storeEvent(url, requestId(kRounds + i),
                 [&](CopyOutcome outcome) { stored += outcome == CopyOutcome::stored ? 1 : 0; });
    }
    Platform::current()->mainQueue->sync([] {});
  });
  const double handRate = kBurst / 10 / hand * 1e6;
  const double rate = stored / ours * 1e6;
  row("a burst, by hand one after another", perSecond(handRate), "");
  row("a burst of 5000, ours", perSecond(rate),
      ratio(rate / handRate) + " x by hand; wanted at least 10000 a second",
      {{"x by hand", rate / handRate, Compared::Better::higher}});
}

/// Microseconds from the hand-over's return to the commit, of events a millisecond apart.
Samples commitTimes(const std::string& url, int count) {
  using Clock = std::chrono::steady_clock;
  std::vector<Clock::time_point> handedOver(static_cast<std::size_t>(count));
  std::vector<Clock::time_point> committed(handedOver.size());
  auto due = Clock::now();
  for (std::size_t i = 0; i < handedOver.size(); ++i) {
    std::this_thread::sleep_until(due += std::chrono::milliseconds(1));
    storeEvent(url, requestId(static_cast<int>(i)), [&, i](CopyOutcome outcome) {
      if (outcome == CopyOutcome::stored) committed[i] = Clock::now();
    });
    handedOver[i] = Clock::now();
  }
  Platform::current()->mainQueue->sync([] {});
  Samples samples;
  for (std::size_t i = 0; i < handedOver.size(); ++i) {
    // A copy that was not stored counts as one that came never.
    const auto until =
        committed[i] == Clock::time_point() ? Clock::time_point::max() : committed[i];
    samples.add(std::chrono::duration<double, std::micro>(until - handedOver[i]).count());
  }
  return samples;
}

void commits(const std::string& url) {
  const auto quantiles = [](const Samples& samples) {
    return "median " + microseconds(samples.median()) + ", 99 % " +
           microseconds(samples.quantile(0.99));
  };
  row("1000 a second, from the hand-over to the commit", quantiles(commitTimes(url, 5000)),
      "wanted 99 % within 20 ms");
  std::atomic<bool> isOver = false;
  std::vector<std::thread> busy;
  for (unsigned i = 0; i < 2 * std::thread::hardware_concurrency(); ++i) {
    busy.emplace_back([&] {
      while (!isOver) {
      }
    });
  }
  const Samples samples = commitTimes(url, 5000);
  isOver = true;
  for (auto& thread : busy) thread.join();
  row("  with twice as many busy threads as processors", quantiles(samples),
      "wanted 99 % within 100 ms");
}

}  // namespace

void storeBench() {
  section(
      "the stored copy of one event; by hand: count, insert, count, each with its open and close");
  const BenchServer server(BenchServer::Manner::instant);
  BenchHost host(server);
  host.start();
  host.setOnline(false);
  host.waitUntilIdle();
  const std::string url = server.listenerUri();
  Depth few(host, 100, url);
  Depth many(host, 10000, url);
  const RequestTexts texts = textsOf(url, BenchHost::parameters());
  texts.json();
  texts.url();
  measure(host, {&few, &many}, texts);
  const double shallow = few.ourCosts.median();
  const double deep = many.ourCosts.median();
  row("100 rows stored, by hand on a table without indexes", microseconds(few.handCosts.median()),
      "");
  row("100 rows stored, ours", microseconds(shallow),
      ratio(shallow / few.handCosts.median()) + " x by hand; wanted at most 0.80",
      {{"x by hand", shallow / few.handCosts.median()}});
  row("10000 rows stored, by hand on a table without indexes",
      microseconds(many.handCosts.median()), "");
  row("10000 rows stored, ours", microseconds(deep),
      ratio(deep / shallow) + " x ours with 100 rows; wanted at most 1.10",
      {{"x 100 rows", deep / shallow}});
  section("stored copies that wait together");
  std::filesystem::rename(few.ours, host.databasePath());
  burst(host, url);
  commits(url);
}

}  // namespace kifo::bench
