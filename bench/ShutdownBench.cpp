#include <sqlite3.h>

#include <chrono>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "bench/BenchHost.h"
#include "bench/Benches.h"
#include "bench/Table.h"

namespace kifo::bench {
namespace {

void measure(BenchServer::Manner manner, int events, const std::string& what,
             const std::string& wanted) {
  const BenchServer server(manner);
  BenchHost host(server);
  host.start(manner != BenchServer::Manner::mute);
  for (int i = 0; i < events; ++i) {
    KifoEventManager::sendEvent("bench", std::nullopt, BenchHost::parameters());
  }
  const auto begin = std::chrono::steady_clock::now();
  const bool isDone = Kifo::shutdown();
  const double took =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
  char figure[64];
  std::snprintf(figure, sizeof figure, "%.1f ms, %s", took,
                isDone ? "all done" : "cut at its bound");
  row(what, figure, wanted);
  sqlite3* database = nullptr;
  sqlite3_stmt* count = nullptr;
  sqlite3_open(host.databasePath().c_str(), &database);
  sqlite3_busy_timeout(database, 5000);
  sqlite3_prepare_v2(database, "select count(*) from KifoLog", -1, &count, nullptr);
  sqlite3_step(count);
  row("  rows left in the store", std::to_string(sqlite3_column_int(count, 0)), "");
  sqlite3_finalize(count);
  sqlite3_close(database);
}

}  // namespace

void shutdownBench() {
  using Manner = BenchServer::Manner;
  section("shutdown, with its bound of 2 s");
  measure(Manner::instant, 0, "a healthy server, nothing under way", "wanted at most 50 ms");
  measure(Manner::instant, 3, "a healthy server, 3 events just sent", "wanted at most 50 ms");
  measure(Manner::mute, 50, "a mute server, 50 events just sent",
          "wanted at most 2000 ms, 50 rows kept");
}

}  // namespace kifo::bench
