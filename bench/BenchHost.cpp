#include "bench/BenchHost.h"

#include <sqlite3.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/watch/WatchSocket.h"

namespace kifo::bench {
namespace {

void drain(SerialQueue& queue) {
  std::promise<void> done;
  queue.post([&] { done.set_value(); });
  done.get_future().wait();
}

}  // namespace

BenchHost::BenchHost(const BenchServer& server)
    : apiUri_(server.apiUri()), listenerUri_(server.listenerUri()) {
  char name[] = "/tmp/kifo-bench-XXXXXX";
  directory_ = mkdtemp(name);
  LinuxPlatformOptions options;
  options.documentsDirectory = directory_;
  Platform platform = makeLinuxPlatform(options);
  platform.watch = std::make_shared<WatchSocket>(directory_ + "/run");
  platform.console = nullPlatform().console;
  platform.reachability = nullPlatform().reachability;
  Platform::install(std::move(platform));
}

BenchHost::~BenchHost() {
  // What a bench has queued may be minutes of work on a busy disk.
  Kifo::shutdown(3600.0);
  std::filesystem::remove_all(directory_);
}

double BenchHost::start(bool settles) {
  KifoInitConfig configuration;
  configuration.bundle = {"com.example.bench"};
  configuration.apiUri = apiUri_;
  configuration.listenerUri = listenerUri_;
  configuration.authorization = "token";
  configuration.applicationName = "bench";
  const auto answered = std::make_shared<std::promise<void>>();
  const auto begin = std::chrono::steady_clock::now();
  Kifo::initialize(configuration, [answered] { answered->set_value(); });
  const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begin;
  answered->get_future().wait_for(std::chrono::seconds(30));
  if (settles) waitUntilIdle();
  return took.count();
}

void BenchHost::setOnline(bool online) {
  Runtime::current()->session.networkStatus =
      online ? KifoNetworkStatus::ONLINE : KifoNetworkStatus::OFFLINE;
}

void BenchHost::waitUntilIdle() {
  Kifo::waitUntilIdle(600);
}

EventParameters BenchHost::parameters() {
  EventParameters parameters;
  for (int i = 0; i < 16; ++i) {
    parameters["parameter_" + std::to_string(i)] = "value number " + std::to_string(i);
  }
  parameters["price"] = 129.95;
  parameters["quantity"] = 3;
  parameters["gift"] = true;
  parameters["tags"] = Value::list({"new", "sale"});
  return parameters;
}

void fillTable(const std::string& databasePath, int count, const std::string& url) {
  sqlite3* database = nullptr;
  sqlite3_open(databasePath.c_str(), &database);
  sqlite3_exec(database, "BEGIN", nullptr, nullptr, nullptr);
  auto parameters = std::make_shared<const EventParameters>(BenchHost::parameters());
  const RequestTexts texts({url, true}, {parameters});
  for (int i = 0; i < count; ++i) {
    char id[40];
    std::snprintf(id, sizeof id, "%08X-0000-4000-8000-%012X",
                  0x9E3779B9U * static_cast<unsigned>(i), static_cast<unsigned>(i));
    const std::string insert =
        "INSERT INTO KifoLog (PARAMETERS, REQUEST_ID, URL, DATE, ISSYNC, TRYCOUNT, HTTPMETHOD, "
        "ISSYNC_SUCCESS) VALUES ('" +
        texts.json() + "', '" + id + "', '" + texts.url() + "', 1, 1, 0, 'POST', 0)";
    sqlite3_exec(database, insert.c_str(), nullptr, nullptr, nullptr);
  }
  sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_close(database);
}

}  // namespace kifo::bench
