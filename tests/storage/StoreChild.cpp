// A process that stores requests on the real main queue until it is killed:
//   kifo_store_child events DIRECTORY   sends an event each millisecond, one '.' for each
//   kifo_store_child group DIRECTORY    dies within a transaction
//   kifo_store_child revoke DIRECTORY STEP
//       revokes the consent and dies before that step of the erasing
//   kifo_store_child begin DIRECTORY    begins where another process ended, and ends
//   kifo_store_child count DIRECTORY URI COUNT
//       sends COUNT events to the server there, one '.' for each, while the network comes and goes;
//       then has every row sent again and prints the counters over the store's life
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"
#include "Kifo_iOS_Common_Kit/storage/DiskStoreFiles.h"
#include "platform/linux/LinuxPlatform.h"
#include "testing/FakeHttpTransport.h"
#include "testing/FakeReachability.h"

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

KifoInitConfig configuration() {
  KifoInitConfig config;
  config.bundle = {"com.example.test"};
  config.apiUri = kApi;
  config.listenerUri = "http://listener.test/events";
  config.authorization = "token";
  return config;
}

void sendEvents() {
  std::promise<void> answered;
  Kifo::initialize(configuration(), [&] { answered.set_value(); });
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

/// The steps of an erasing, of which one is the process's last.
class Steps {
 public:
  static void begin(int last) { left = last; }
  static void take() {
    if (left > 0 && --left == 0) raise(SIGKILL);
  }

 private:
  static inline std::atomic<int> left = 0;
};

class KillingFiles final : public StoreFiles {
 public:
  bool exists(const std::string& path) override { return disk_.exists(path); }
  void makeDirectories(const std::string& path) override { disk_.makeDirectories(path); }
  bool makePrivate(const std::string& path) override {
    Steps::take();
    return disk_.makePrivate(path);
  }
  std::optional<Error> move(const std::string& from, const std::string& to,
                            bool replaces) override {
    Steps::take();
    return disk_.move(from, to, replaces);
  }
  std::optional<Error> remove(const std::string& path) override {
    Steps::take();
    return disk_.remove(path);
  }

 private:
  DiskStoreFiles disk_;
};

class KillingDefaults final : public UserDefaults {
 public:
  explicit KillingDefaults(std::shared_ptr<UserDefaults> file) : file_(std::move(file)) {}
  std::optional<DefaultsValue> value(const std::string& key) const override {
    return file_->value(key);
  }
  void setValue(const std::string& key, DefaultsValue value) override {
    file_->setValue(key, std::move(value));
  }
  bool removeAll() override {
    Steps::take();
    const bool isDone = file_->removeAll();
    Steps::take();
    return isDone;
  }

 private:
  const std::shared_ptr<UserDefaults> file_;
};

void installKilling(const std::string& directory) {
  install(directory);
  Platform platform = *Platform::current();
  platform.temporaryDirectory = directory + "/cache";
  platform.storeFiles = std::make_shared<KillingFiles>();
  platform.userDefaults = std::make_shared<KillingDefaults>(platform.userDefaults);
  Platform::install(std::move(platform));
}

void initialize() {
  auto config = configuration();
  config.requiresConsent = true;
  Kifo::initialize(config);
  Kifo::waitUntilIdle(20.0);
}

/// A host with rows, defaults and a picture, whose consent is then revoked.
int revoke(int lastStep) {
  Kifo::giveConsent();
  initialize();
  Kifo::setPushToken("push");
  Kifo::setApnsToken({1});
  KifoEventManager::sendEvent("kept", std::nullopt);
  Kifo::waitUntilIdle(20.0);
  const auto picture = AttachmentFile::write("pixels");
  Steps::begin(lastStep);
  Kifo::revokeConsent();
  Kifo::waitUntilIdle(20.0);
  return Kifo::shutdown() ? 0 : 1;
}

constexpr int kReachable = 2;  // a flag of the reachability port

/// A real platform but for the state of the network.
std::shared_ptr<testing::FakeReachability> installScripted(const std::string& directory) {
  Platform platform = makeLinuxPlatform({.documentsDirectory = directory});
  const auto reachability = std::make_shared<testing::FakeReachability>();
  reachability->setFlags(kReachable);
  platform.reachability = reachability;
  platform.console = nullPlatform().console;
  Platform::install(std::move(platform));
  return reachability;
}

/// Changes the network and waits until the SDK has read it.
void setNetwork(testing::FakeReachability& network, int flags) {
  network.change(static_cast<std::uint32_t>(flags));
  Platform::current()->reachabilityQueue->sync([] {});
  Platform::current()->mainQueue->sync([] {});
}

void printCounters() {
  const Counts life = Kifo::statistics().overLife;
  std::printf("\n");
  for (std::size_t index = 0; index < kCounters; ++index) {
    const auto counter = static_cast<Counter>(index);
    std::printf("%s %lld\n", std::string(name(counter)).c_str(),
                static_cast<long long>(life[counter]));
  }
}

int countEvents(const std::string& directory, const std::string& uri, int events) {
  const auto network = installScripted(directory);
  auto config = configuration();
  config.apiUri = uri + "/getInAppCommunication";
  config.listenerUri = uri + "/sdkListenerEvent";
  std::promise<void> answered;
  Kifo::initialize(config, [&] { answered.set_value(); });
  answered.get_future().wait();
  for (int number = 0; number < events; ++number) {
    if (number % 10 == 5) setNetwork(*network, number % 20 == 5 ? 0 : kReachable);
    KifoEventManager::sendEvent("tap", std::nullopt, {{"number", number}});
    if (::write(STDOUT_FILENO, ".", 1) != 1) return 1;
  }
  do {
    setNetwork(*network, 0);
    setNetwork(*network, kReachable);
    if (!Kifo::waitUntilIdle(20.0)) return 1;
  } while (Kifo::statistics().sinceInitialize[Counter::waiting] > 0);
  printCounters();
  return Kifo::shutdown() ? 0 : 1;
}

int begin() {
  initialize();
  return Kifo::shutdown() ? 0 : 1;
}

}  // namespace
}  // namespace kifo

int main(int count, char** texts) {
  if (count < 3) return 64;
  const std::string mode = texts[1];
  if (mode == "count" && count == 5) {
    return kifo::countEvents(texts[2], texts[3], std::atoi(texts[4]));
  }
  if (mode == "revoke" || mode == "begin") {
    kifo::installKilling(texts[2]);
    return mode == "begin" ? kifo::begin() : kifo::revoke(count > 3 ? std::atoi(texts[3]) : 0);
  }
  kifo::install(texts[2]);
  mode == "group" ? kifo::dieWithinGroup() : kifo::sendEvents();
}
