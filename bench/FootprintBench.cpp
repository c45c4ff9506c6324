#include <curl/curl.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "bench/BenchHost.h"
#include "bench/Benches.h"
#include "bench/Table.h"

namespace kifo::bench {
namespace {

/// A number from /proc/self/status, such as "VmRSS" (kB) or "Threads".
long status(const std::string& name) {
  std::ifstream file("/proc/self/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(name + ":")) return std::stol(line.substr(name.size() + 1));
  }
  return 0;
}

/// Voluntary switches of all threads: each is one going to sleep, so each is one wake-up before.
long wakeUps() {
  long total = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream file(task.path() / "status");
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("voluntary_ctxt_switches:")) total += std::stol(line.substr(24));
    }
  }
  return total;
}

/// What a host that uses SQLite and libcurl by itself has loaded already: one request, one
/// statement.
void useTheLibraries(const std::string& url) {
  curl_global_init(CURL_GLOBAL_DEFAULT);
  CURL* curl = curl_easy_init();
  curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl, CURLOPT_POSTFIELDS, "{}");
  curl_easy_setopt(
      curl, CURLOPT_WRITEFUNCTION,
      +[](char*, std::size_t size, std::size_t count, void*) { return size * count; });
  curl_easy_perform(curl);
  curl_easy_cleanup(curl);
  sqlite3* database = nullptr;
  sqlite3_open(":memory:", &database);
  sqlite3_exec(database, "create table t (a); insert into t values (1); select * from t", nullptr,
               nullptr, nullptr);
  sqlite3_close(database);
}

void librarySize() {
  const std::string stripped = std::filesystem::temp_directory_path() / "kifo-stripped.so";
  const std::string command = "strip -o " + stripped + " " + KIFO_LIBRARY;
  if (std::system(command.c_str()) != 0) return;
  row("the stripped shared library",
      std::to_string(std::filesystem::file_size(stripped) / 1024) + " KiB", "wanted at most 600 KB",
      {{"KiB", static_cast<double>(std::filesystem::file_size(stripped)) / 1024}});
  std::filesystem::remove(stripped);
}

}  // namespace

void footprintBench() {
  section("start and footprint");
  const BenchServer server(BenchServer::Manner::instant);
  const long empty = status("VmRSS");
  useTheLibraries(server.apiUri());
  const long floor = status("VmRSS");
  const long threads = status("Threads");
  BenchHost host(server);
  row("initialize, a token in hand, no files yet", microseconds(host.start()),
      "wanted at most 2000 µs");
  for (int i = 0; i < 100; ++i)
    KifoEventManager::sendEvent("bench", std::nullopt, BenchHost::parameters());
  host.waitUntilIdle();
  const long ours = status("VmRSS");
  row("resident: before anything", std::to_string(empty) + " kB", "");
  row("resident: a host's own use of libcurl and SQLite", std::to_string(floor) + " kB",
      "the floor");
  row("resident: and the SDK, after 100 events", std::to_string(ours) + " kB",
      "adds " + std::to_string(ours - floor) + " kB; wanted at most 4096",
      {{"kB added", static_cast<double>(ours - floor)}});
  row("threads added", std::to_string(status("Threads") - threads), "wanted at most 4",
      {{"threads", static_cast<double>(status("Threads") - threads)}});
  // Threads that had a sender's work look for more for a moment before they sleep.
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  const long before = wakeUps();
  constexpr int seconds = 5;
  std::this_thread::sleep_for(std::chrono::seconds(seconds));
  // The one that this bench's own sleep makes is not the SDK's.
  const long wakes = wakeUps() - before - 1;
  row("wake-ups in " + std::to_string(seconds) + " idle seconds", std::to_string(wakes), "wanted 0",
      {{"wake-ups", static_cast<double>(wakes)}});
  librarySize();
}

}  // namespace kifo::bench
