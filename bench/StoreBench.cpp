#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <initializer_list>

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
constexpr int kRoundsAtOnce = 50;  // of one depth, before the other has its turn
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

/// Ours and by hand, turn about, so that a noisy moment meets both; some at once, because a deep
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

}  // namespace

void storeBench() {
  section("the stored copy of one event (count, insert, count; each with its open and close)");
  const BenchServer server(BenchServer::Manner::instant);
  BenchHost host(server);
  host.start();
  host.setOnline(false);
  host.waitUntilIdle();
  const std::string url = server.listenerUri();
  Depth few(host, 100, url);
  Depth many(host, 10000, url);
  const RequestTexts texts(url, true,
                           std::make_shared<const EventParameters>(BenchHost::parameters()));
  texts.json();
  texts.url();
  measure(host, {&few, &many}, texts);
  const double shallow = few.ourCosts.median();
  const double deep = many.ourCosts.median();
  row("100 rows stored, by hand on a table without indexes", microseconds(few.handCosts.median()),
      "");
  row("100 rows stored, ours", microseconds(shallow),
      ratio(shallow / few.handCosts.median()) + " x by hand; wanted at most 1.20");
  row("10000 rows stored, by hand on a table without indexes",
      microseconds(many.handCosts.median()), "");
  row("10000 rows stored, ours", microseconds(deep),
      ratio(deep / shallow) + " x ours with 100 rows; wanted at most 1.10");
}

}  // namespace kifo::bench
