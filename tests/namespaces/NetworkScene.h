#pragma once

#include <algorithm>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "platform/linux/http/CurlTransport.h"
#include "platform/linux/reachability/NetlinkReachability.h"
#include "platform/linux/threads/LinuxSerialQueue.h"
#include "testing/FakePlatform.h"
#include "testing/server/LocalServer.h"
#include "tests/namespaces/CabledTest.h"
#include "tests/support/Common.h"
#include "tests/support/DatabaseRows.h"

namespace kifo::testing {

/// A console whose lines can be waited for.
class ConsoleLog final : public ConsoleSink {
 public:
  void write(std::string line) override {
    const std::lock_guard lock(mutex_);
    lines_.push_back(std::move(line));
    written_.notify_all();
  }
  /// Lines so far; what is waited for is counted from there.
  [[nodiscard]] std::size_t mark() const {
    const std::lock_guard lock(mutex_);
    return lines_.size();
  }
  /// Waits for a line behind `mark` that is exactly `line`; the mark behind it. None when
  /// it does not come.
  [[nodiscard]] std::optional<std::size_t> await(std::string_view line, std::size_t mark) const {
    std::unique_lock lock(mutex_);
    auto found = lines_.end();
    const bool came = written_.wait_for(lock, patience(), [&] {
      found = std::find(lines_.begin() + static_cast<std::ptrdiff_t>(mark), lines_.end(), line);
      return found != lines_.end();
    });
    if (!came) return std::nullopt;
    return static_cast<std::size_t>(found - lines_.begin()) + 1;
  }
  /// Waits for any line behind `mark`. False when none comes.
  bool awaitMore(std::size_t mark) const {
    std::unique_lock lock(mutex_);
    return written_.wait_for(lock, patience(), [&] { return lines_.size() > mark; });
  }

 private:
  mutable std::mutex mutex_;
  mutable std::condition_variable written_;
  std::vector<std::string> lines_;  // Guarded by mutex_.
};

/// The whole SDK on real queues, sockets and a real database, with a default route to the net, and
/// the server there at 10.99.0.1 and fd99::1, on the net's loopback.
class NetworkScene : public CabledTest {
 protected:
  using Clock = std::chrono::steady_clock;
  static constexpr auto kServerPath = "/sdkListenerEvent";

  void SetUp() override {
    CabledTest::SetUp();
    if (IsSkipped()) return;
    net("addr add 10.99.0.1/32 dev lo");
    net("addr add fd99::1/128 dev lo");
    // Behind the place where a black hole goes.
    net("rule add prio 2 lookup local");
    net("rule del prio 0");
    host("route add default via 10.7.0.1");
    net_->run([this] {
      server_ = std::make_unique<LocalServer>(LocalServer::Options{.host = "::"});
      server_->start();
    });
  }
  void TearDown() override {
    if (!inside_) return;
    if (Kifo::isStarted()) Kifo::shutdown(10.0);
    server_->stop();
    inside_.reset();
  }

  [[nodiscard]] std::string endpoint(const std::string& address, const std::string& path) const {
    const bool isIPv6 = address.find(':') != std::string::npos;
    return "http://" + (isIPv6 ? "[" + address + "]" : address) + ":" +
           std::to_string(server_->port()) + path;
  }
  /// Real queues, sockets and a real database, with the fakes for everything else.
  Platform platform() {
    Platform platform = fake_.platform();
    const auto reachabilityQueue = std::make_shared<LinuxSerialQueue>("kifo.reach");
    platform.mainQueue = std::make_shared<LinuxSerialQueue>("kifo.main");
    platform.answerQueue = std::make_shared<LinuxSerialQueue>("kifo.answers");
    platform.reachabilityQueue = reachabilityQueue;
    platform.reachability = std::make_shared<NetlinkReachabilityService>(reachabilityQueue);
    platform.http = std::make_shared<CurlTransport>();
    platform.console = console_;
    platform.documentsDirectory = documents_.path();
    return platform;
  }
  [[nodiscard]] KifoInitConfig configuration(const std::string& address = "10.99.0.1") const {
    KifoInitConfig config;
    config.bundle = {"com.example.kiosk"};
    config.apiUri = endpoint(address, "/getInAppCommunication");
    config.listenerUri = endpoint(address, kServerPath);
    config.authorization = "token";
    config.actorId = "actor";
    config.isWifiStatusRequired = true;
    return config;
  }
  /// Initialises the SDK and waits until it is online and its start-up events have arrived.
  void start(const std::string& address = "10.99.0.1") {
    Platform::install(platform());
    fake_.userDefaults->setValue(TokenConstant::TIMEOUT, 60.0);
    std::promise<void> answered;
    Kifo::initialize(configuration(address), [&] { answered.set_value(); });
    ASSERT_EQ(answered.get_future().wait_for(patience()), std::future_status::ready);
    ASSERT_TRUE(goesOnline());
    ASSERT_TRUE(awaitReceived("sdk_initialize", 1));
  }

  void loseTheRoute() {
    host("route del default");
    ASSERT_TRUE(goesOffline());
  }
  void findTheRoute() {
    host("route add default via 10.7.0.1");
    ASSERT_TRUE(goesOnline());
  }
  /// Waits for the next of the status's console lines; true when it came.
  bool goesOffline() { return awaitStatus("OFFLINE"); }
  bool goesOnline() { return awaitStatus("ONLINE"); }
  /// Waits until the SDK takes itself for online; status lines from before count no more.
  bool isOnlineAtLast() {
    const auto end = Clock::now() + patience();
    while (Clock::now() < end) {
      statusMark_ = console_->mark();
      if (Kifo::networkStatus() == KifoNetworkStatus::ONLINE) return true;
      if (!console_->awaitMore(statusMark_)) return false;
    }
    return false;
  }
  /// Waits until no stored request is left.
  bool drains() {
    const auto end = Clock::now() + patience();
    while (Clock::now() < end) {
      const std::size_t mark = console_->mark();
      if (rowCount() == "0") return true;
      // Whatever is still under way says so on the console before it changes the table.
      if (!console_->awaitMore(mark)) return false;
    }
    return false;
  }
  /// Waits until every request was answered or given up.
  static bool awaitAnswers() {
    return Kifo::waitUntilIdle(std::chrono::duration<double>(patience()).count());
  }

  /// Sends the events `name`0, `name`1, …, or from a later number on.
  static void send(const std::string& name, int count, int first = 0) {
    for (int i = first; i < first + count; ++i) {
      KifoEventManager::sendEvent(name + std::to_string(i), std::nullopt);
    }
  }
  /// What the server received of events whose name starts so: their values under `key`.
  [[nodiscard]] std::vector<std::string> values(const std::string& name, const char* key) const {
    std::vector<std::string> texts;
    for (const auto& request : server_->requests().on(kServerPath)) {
      if (request->text(Constants::NAME).starts_with(name)) texts.push_back(request->text(key));
    }
    return texts;
  }
  /// The numbers behind the name, in order of arrival.
  [[nodiscard]] std::vector<int> received(const std::string& name) const {
    std::vector<int> numbers;
    for (const std::string& event : values(name, Constants::NAME)) {
      int number = 0;
      std::from_chars(event.data() + name.size(), event.data() + event.size(), number);
      numbers.push_back(number);
    }
    return numbers;
  }
  bool awaitReceived(const std::string& name, std::size_t count) const {
    const auto isOne = [&](const auto& request) {
      return request->text(Constants::NAME).starts_with(name);
    };
    return server_->requests().waitFor(
        [&](const auto& all) {
          return static_cast<std::size_t>(std::ranges::count_if(all, isOne)) >= count;
        },
        patience());
  }

  /// Rows of a query on the database, after every statement that was queued; cells joined by "|".
  [[nodiscard]] std::vector<std::string> rows(const std::string& query) const {
    const auto platform = Platform::current();
    // Answers queue statements; behind both of them the file is as it will stay.
    platform->answerQueue->sync([] {});
    platform->mainQueue->sync([] {});
    return databaseRows(platform->documentsDirectory + "/KifoLog.db", query);
  }
  [[nodiscard]] std::string rowCount() const { return rows("select count(*) from KifoLog").at(0); }

  std::unique_ptr<LocalServer> server_;
  const std::shared_ptr<ConsoleLog> console_ = std::make_shared<ConsoleLog>();

  /// In memory, for it is not the disk that is looked at here.
  const TemporaryDirectory documents_{"/dev/shm"};

 private:
  bool awaitStatus(const std::string& status) {
    const auto mark = console_->await("Kifo Kifo: KifoNetworkStatus: " + status, statusMark_);
    statusMark_ = mark.value_or(statusMark_);
    return mark.has_value();
  }

  FakePlatform fake_;
  std::size_t statusMark_ = 0;
};

}  // namespace kifo::testing
