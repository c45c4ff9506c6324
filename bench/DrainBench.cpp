#include <curl/curl.h>
#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"
#include "Kifo_iOS_Common_Kit/storage/LogTable.h"
#include "bench/BenchHost.h"
#include "bench/Benches.h"
#include "bench/Table.h"

namespace kifo::bench {
namespace {

using Clock = std::chrono::steady_clock;

std::vector<std::string> query(const std::string& path, const std::string& statement) {
  std::vector<std::string> cells;
  sqlite3* database = nullptr;
  sqlite3_stmt* prepared = nullptr;
  sqlite3_open(path.c_str(), &database);
  sqlite3_busy_timeout(database, 5000);
  sqlite3_prepare_v2(database, statement.c_str(), -1, &prepared, nullptr);
  while (sqlite3_step(prepared) == SQLITE_ROW) {
    for (int i = 0; i < sqlite3_column_count(prepared); ++i) {
      cells.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(prepared, i)));
    }
  }
  sqlite3_finalize(prepared);
  sqlite3_close(database);
  return cells;
}

std::size_t discard(char*, std::size_t size, std::size_t count, void*) {
  return size * count;
}

/// The bare statements of a re-send and one POST for each row over one kept connection.
double byHand(const std::string& path, int rows) {
  CURL* curl = curl_easy_init();
  curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
  curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, discard);
  const auto begin = Clock::now();
  for (int i = 0; i < rows; ++i) {
    const auto row =
        query(path,
              "select ID, PARAMETERS, URL, HTTPMETHOD, DATE, TRYCOUNT, ISSYNC, REQUEST_ID "
              "from KifoLog where ISSYNC_SUCCESS = 0 and TRYCOUNT = 0 LIMIT 1");
    const std::string where = " where REQUEST_ID = '" + row[7] + "'";
    query(path, "update KifoLog set TRYCOUNT = TRYCOUNT + 1" + where);
    curl_easy_setopt(curl, CURLOPT_URL, row[2].c_str());
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, row[1].c_str());
    curl_easy_perform(curl);
    query(path, "update KifoLog set ISSYNC_SUCCESS = 1, ISSYNC = 1" + where);
    query(path, "delete from KifoLog" + where + " or TRYCOUNT > 0");
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
  curl_slist_free_all(headers);
  curl_easy_cleanup(curl);
  return rows / seconds;
}

double ours(const std::string& path, int rows) {
  const auto begin = Clock::now();
  ServiceClient::make()->syncLogs();
  while (query(path, "select count(*) from KifoLog").at(0) != "0") {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return rows / std::chrono::duration<double>(Clock::now() - begin).count();
}

std::string perSecond(double rate) {
  return std::to_string(static_cast<int>(rate * 10) / 10.0).substr(0, 6) + " a second";
}

}  // namespace

void drainBench() {
  section("sending stored requests again, one after another");
  {
    constexpr int rows = 2000;
    const BenchServer server(BenchServer::Manner::instant);
    BenchHost host(server);
    host.start();
    const std::string copy = host.directory() + "/copy.db";
    std::filesystem::copy_file(host.databasePath(), copy);
    fillTable(copy, rows, server.listenerUri());
    const double floor = byHand(copy, rows);
    fillTable(host.databasePath(), rows, server.listenerUri());
    const double rate = ours(host.databasePath(), rows);
    row("2000 rows, a server that answers at once: by hand", perSecond(floor), "");
    row("2000 rows, a server that answers at once: ours", perSecond(rate),
        ratio(rate / floor) + " x by hand; wanted at least 0.80");
  }
  constexpr int rows = 100;
  const BenchServer server(BenchServer::Manner::fiftyMilliseconds);
  BenchHost host(server);
  host.start();
  fillTable(host.databasePath(), rows, server.listenerUri());
  const double rate = ours(host.databasePath(), rows);
  row("100 rows, a server that takes 50 ms", perSecond(rate),
      ratio(rate / 20.0) + " x the 20 a second of one at a time; wanted at least 0.95");
}

}  // namespace kifo::bench
