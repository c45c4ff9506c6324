#include <sqlite3.h>

#include <chrono>

#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"
#include "Kifo_iOS_Common_Kit/storage/LogTable.h"
#include "bench/BenchHost.h"
#include "bench/Benches.h"
#include "bench/Table.h"

namespace kifo::bench {
namespace {

constexpr int kRounds = 400;
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

double now() {
  return std::chrono::duration<double, std::micro>(
             std::chrono::steady_clock::now().time_since_epoch())
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

struct Costs {
  double ours;
  double hand;
};

/// Ours and by hand, turn about, so that a noisy moment meets both.
Costs measure(int depth) {
  const BenchServer server(BenchServer::Manner::instant);
  BenchHost host(server);
  host.start();
  host.setOnline(false);
  fillTable(host.databasePath(), depth, server.listenerUri());
  const std::string bare = host.directory() + "/bare.db";
  makeBareTable(bare, depth, server.listenerUri());
  const auto parameters = std::make_shared<const nlohmann::json>(BenchHost::parameters());
  const RequestTexts texts(server.listenerUri(), true, parameters);
  texts.json();
  texts.url();
  Samples ours;
  Samples hand;
  for (int round = 0; round < kRounds; ++round) {
    const KifoLog log = sample(texts, requestId(round));
    Platform::current()->mainQueue->sync([] {});
    double begin = now();
    DataManager().cacheLog(1000000, [&] { return log; });
    Platform::current()->mainQueue->sync([] {});
    ours.add(now() - begin);
    begin = now();
    byHand(bare, kCount);
    byHand(bare, insert(log));
    byHand(bare, kCount);
    hand.add(now() - begin);
  }
  return {ours.median(), hand.median()};
}

}  // namespace

void storeBench() {
  section("the stored copy of one event (count, insert, count; each with its open and close)");
  const Costs shallow = measure(100);
  const Costs deep = measure(10000);
  row("100 rows stored, by hand on a table without indexes", microseconds(shallow.hand), "");
  row("100 rows stored, ours", microseconds(shallow.ours),
      ratio(shallow.ours / shallow.hand) + " x by hand; wanted at most 1.20");
  row("10000 rows stored, by hand on a table without indexes", microseconds(deep.hand), "");
  row("10000 rows stored, ours", microseconds(deep.ours),
      ratio(deep.ours / shallow.ours) + " x ours with 100 rows; wanted at most 1.10");
}

}  // namespace kifo::bench
