// A process that stores requests on the real main queue until it is killed:
//   kifo_store_child events DIRECTORY   sends an event each millisecond, one '.' for each
//   kifo_store_child group DIRECTORY    dies within a transaction
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <future>
#include <string>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"
#include "platform/linux/LinuxPlatform.h"
#include "testing/FakeHttpTransport.h"

namespace kifo {
namespace {

constexpr auto kApi = "http://api.test/inapp";
constexpr auto kAnswer = R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":1000000}})";

/// The server gives its in-app answer and refuses every event.
std::optional<HttpAnswer> answer(const HttpRequest& request) {
  if (request.url.starts_with(kApi)) return HttpAnswer{{}, 200, kAnswer};
  return HttpAnswer{Error{"http", 7, "Couldn't connect to server"}, 0, ""};
}

void install(const std::string& directory) {
  Platform platform = makeLinuxPlatform({.documentsDirectory = directory});
  const auto http = std::make_shared<testing::FakeHttpTransport>(platform.answerQueue);
  http->setHandler(answer);
  platform.http = http;
  platform.reachability = nullPlatform().reachability;
  platform.console = nullPlatform().console;
  Platform::install(std::move(platform));
}

void sendEvents() {
  KifoInitConfig configuration;
  configuration.bundle = {"com.example.test"};
  configuration.apiUri = kApi;
  configuration.listenerUri = "http://listener.test/events";
  configuration.authorization = "token";
  std::promise<void> answered;
  Kifo::initialize(configuration, [&] { answered.set_value(); });
  answered.get_future().wait();
  auto due = std::chrono::steady_clock::now();
  for (int number = 0;; ++number) {
    std::this_thread::sleep_until(due += std::chrono::milliseconds(1));
    KifoEventManager::sendEvent("tap", std::nullopt, {{"number", number}});
    if (::write(STDOUT_FILENO, ".", 1) != 1) return;
  }
}

/// Ten rows of one group, and then a group that is too large for SQLite's cache, so that pages of
/// it reach the file before the process dies in its midst.
void dieWithinGroup() {
  const DataManager data;
  data.createTable();
  const auto storeAll = [&](int count, const std::string& body) {
    Platform::current()->mainQueue->sync([&] {
      for (int number = 0; number < count; ++number) {
        data.cacheLog(1000, std::to_string(number), [=] {
          if (number == 90) raise(SIGKILL);
          return KifoLog(0, body, "http://h/p", "POST", 1, 0, 0, std::to_string(number));
        });
      }
    });
  };
  storeAll(10, "{}");
  Platform::current()->mainQueue->sync([] {});
  storeAll(100, "\"" + std::string(100'000, 'x') + "\"");
  pause();
}

}  // namespace
}  // namespace kifo

int main(int count, char** texts) {
  if (count != 3) return 64;
  kifo::install(texts[2]);
  std::string(texts[1]) == "group" ? kifo::dieWithinGroup() : kifo::sendEvents();
}
