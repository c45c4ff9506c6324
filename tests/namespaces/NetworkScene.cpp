#include "tests/namespaces/NetworkScene.h"

#include <charconv>
#include <future>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "platform/linux/http/CurlTransport.h"
#include "platform/linux/reachability/NetlinkReachability.h"
#include "platform/linux/threads/LinuxSerialQueue.h"
#include "tests/support/DatabaseRows.h"

namespace kifo::testing {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kServerPath = "/sdkListenerEvent";

}  // namespace

void NetworkScene::SetUp() {
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

void NetworkScene::TearDown() {
  if (!inside_) return;
  if (Kifo::isStarted()) shutDown();
  server_->stop();
  inside_.reset();
}

std::string NetworkScene::endpoint(const std::string& address, const std::string& path) const {
  const bool isIPv6 = address.find(':') != std::string::npos;
  return "http://" + (isIPv6 ? "[" + address + "]" : address) + ":" +
         std::to_string(server_->port()) + path;
}

Platform NetworkScene::platform() {
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

KifoInitConfig NetworkScene::configuration(const std::string& address) const {
  KifoInitConfig config;
  config.bundle = {"com.example.kiosk"};
  config.apiUri = endpoint(address, "/getInAppCommunication");
  config.listenerUri = endpoint(address, kServerPath);
  config.authorization = "token";
  config.actorId = "actor";
  config.isWifiStatusRequired = true;
  return config;
}

void NetworkScene::start(const std::string& address, double timeout) {
  Platform::install(platform());
  fake_.userDefaults->setValue(TokenConstant::TIMEOUT, timeout);
  std::promise<void> answered;
  Kifo::initialize(configuration(address), [&] { answered.set_value(); });
  ASSERT_EQ(answered.get_future().wait_for(patience()), std::future_status::ready);
  ASSERT_TRUE(goesOnline());
  ASSERT_TRUE(awaitReceived("sdk_initialize", 1));
}

bool NetworkScene::shutDown(double bound) {
  return Kifo::shutdown(bound);
}

void NetworkScene::setBlackHole(bool swallows) {
  net(std::string("rule ") + (swallows ? "add" : "del") + " prio 1 from 10.7.0.2 blackhole");
}

bool NetworkScene::awaitAnswers() {
  return Kifo::waitUntilIdle(std::chrono::duration<double>(patience()).count());
}

void NetworkScene::loseTheRoute() {
  host("route del default");
  ASSERT_TRUE(goesOffline());
}

void NetworkScene::findTheRoute() {
  host("route add default via 10.7.0.1");
  ASSERT_TRUE(goesOnline());
}

bool NetworkScene::awaitStatus(const std::string& status) {
  const auto mark = console_->await("Kifo Kifo: KifoNetworkStatus: " + status, statusMark_);
  statusMark_ = mark.value_or(statusMark_);
  return mark.has_value();
}

bool NetworkScene::isOnlineAtLast() {
  const auto end = Clock::now() + patience();
  while (Clock::now() < end) {
    statusMark_ = console_->mark();
    if (Kifo::networkStatus() == KifoNetworkStatus::ONLINE) return true;
    if (!console_->awaitMore(statusMark_)) return false;
  }
  return false;
}

bool NetworkScene::drains() {
  const auto end = Clock::now() + patience();
  while (Clock::now() < end) {
    const std::size_t mark = console_->mark();
    if (rowCount() == "0") return true;
    // Whatever is still under way says so on the console before it changes the table.
    if (!console_->awaitMore(mark)) return false;
  }
  return false;
}

void NetworkScene::send(const std::string& name, int count, int first) {
  for (int i = first; i < first + count; ++i) {
    KifoEventManager::sendEvent(name + std::to_string(i), std::nullopt);
  }
}

std::vector<int> NetworkScene::received(const std::string& name) const {
  std::vector<int> numbers;
  for (const auto& request : server_->requests().on(kServerPath)) {
    const std::string event = request->text(Constants::NAME);
    if (!event.starts_with(name)) continue;
    int number = 0;
    std::from_chars(event.data() + name.size(), event.data() + event.size(), number);
    numbers.push_back(number);
  }
  return numbers;
}

bool NetworkScene::awaitReceived(const std::string& name, std::size_t count) const {
  const auto isOne = [&](const auto& request) {
    return request->text(Constants::NAME).starts_with(name);
  };
  return server_->requests().waitFor(
      [&](const auto& all) {
        return static_cast<std::size_t>(std::ranges::count_if(all, isOne)) >= count;
      },
      patience());
}

std::vector<std::string> NetworkScene::values(const std::string& name, const char* key) const {
  std::vector<std::string> texts;
  for (const auto& request : server_->requests().on(kServerPath)) {
    if (request->text(Constants::NAME).starts_with(name)) texts.push_back(request->text(key));
  }
  return texts;
}

std::vector<std::string> NetworkScene::rows(const std::string& query) const {
  const auto platform = Platform::current();
  // Answers queue statements; behind both of them the file is as it will stay.
  platform->answerQueue->sync([] {});
  platform->mainQueue->sync([] {});
  return databaseRows(platform->documentsDirectory + "/KifoLog.db", query);
}

}  // namespace kifo::testing
