#include <curl/curl.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
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

/// One kept connection.
class Poster {
 public:
  Poster() {
    headers_ = curl_slist_append(nullptr, "Content-Type: application/json");
    curl_easy_setopt(curl_, CURLOPT_HTTPHEADER, headers_);
    curl_easy_setopt(curl_, CURLOPT_WRITEFUNCTION, discard);
  }
  ~Poster() {
    curl_slist_free_all(headers_);
    curl_easy_cleanup(curl_);
  }
  Poster(const Poster&) = delete;
  Poster& operator=(const Poster&) = delete;

  void post(const std::string& url, const std::string& body) {
    curl_easy_setopt(curl_, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl_, CURLOPT_POSTFIELDS, body.c_str());
    curl_easy_perform(curl_);
  }

 private:
  CURL* curl_ = curl_easy_init();
  curl_slist* headers_ = nullptr;
};

double secondsOf(const std::function<void()>& work) {
  const auto begin = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// What the server and the connection allow, without a store.
void postAlone(Poster& poster, const std::string& url, int rows) {
  for (int i = 0; i < rows; ++i) poster.post(url, "{}");
}

/// The bare statements of a re-send and one POST for each row.
void byHand(Poster& poster, const std::string& path, int rows) {
  for (int i = 0; i < rows; ++i) {
    const auto row =
        query(path,
              "select ID, PARAMETERS, URL, HTTPMETHOD, DATE, TRYCOUNT, ISSYNC, REQUEST_ID "
              "from KifoLog where ISSYNC_SUCCESS = 0 and TRYCOUNT = 0 LIMIT 1");
    const std::string where = " where REQUEST_ID = '" + row[7] + "'";
    query(path, "update KifoLog set TRYCOUNT = TRYCOUNT + 1" + where);
    poster.post(row[2], row[1]);
    query(path, "update KifoLog set ISSYNC_SUCCESS = 1, ISSYNC = 1" + where);
    query(path, "delete from KifoLog" + where + " or TRYCOUNT > 0");
  }
}

/// The SDK's own pass; over when the last answer has been dealt with.
void ours(const BenchServer& server, int rows) {
  const std::uint64_t before = server.received();
  ServiceClient::make()->syncLogs();
  while (server.received() < before + static_cast<std::uint64_t>(rows)) {
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
  BenchHost::waitUntilIdle();
}

/// Alternately, in blocks, so that a noisy moment affects both.
void compare(BenchServer::Manner manner, const std::string& what, int blocks, int rows,
             const std::string& wanted) {
  const BenchServer server(manner);
  BenchHost host(server);
  host.start();
  const std::string copy = host.directory() + "/copy.db";
  std::filesystem::copy_file(host.databasePath(), copy);
  Poster poster;
  double alone = 0;
  double hand = 0;
  double own = 0;
  for (int block = 0; block < blocks; ++block) {
    alone += secondsOf([&] { postAlone(poster, server.listenerUri(), rows); });
    fillTable(copy, rows, server.listenerUri());
    hand += secondsOf([&] { byHand(poster, copy, rows); });
    fillTable(host.databasePath(), rows, server.listenerUri());
    own += secondsOf([&] { ours(server, rows); });
  }
  const int all = blocks * rows;
  row(what + ": posts alone", perSecond(all / alone), "the floor");
  row(what + ": by hand", perSecond(all / hand), "statements and posts");
  row(what + ": ours", perSecond(all / own), ratio(hand / own) + " x by hand; " + wanted,
      {{"x by hand", hand / own, Compared::Better::higher},
       {"x posts alone", alone / own, Compared::Better::higher}});
}

}  // namespace

void drainBench() {
  section("sending stored requests again, one after another");
  compare(BenchServer::Manner::instant, "2000 rows, a server that answers at once", 10, 200,
          "wanted at least 0.80 x by hand");
  compare(BenchServer::Manner::fiftyMilliseconds, "200 rows, a server that takes 50 ms", 2, 100,
          "wanted at least 19 a second");
}

}  // namespace kifo::bench
