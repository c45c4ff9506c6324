// The whole SDK on this system's services, against a server that others wrote.
#include <gmock/gmock.h>

#include <cstdlib>
#include <future>
#include <map>
#include <set>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/http/CurlTransport.h"
#include "testing/FakePlatform.h"
#include "testing/server/LocalServer.h"
#include "tests/peers/Nginx.h"
#include "tests/support/Sockets.h"

namespace kifo::testing {
namespace {

constexpr auto kBound = std::chrono::seconds(30);

struct Manner {
  const char* name;
  Nginx::Options nginx;
  const char* protocol;
  std::size_t mostConnections;
};

class NginxTest : public ::testing::TestWithParam<Manner> {
 protected:
  void SetUp() override {
    if (!Nginx::whyNot().empty()) GTEST_SKIP() << Nginx::whyNot();
    server_.start();
    ASSERT_TRUE(nginx_.start(server_.port(), GetParam().nginx));
    Platform platform = makeLinuxPlatform({.documentsDirectory = directory_.path(),
                                           .certificateAuthorities = nginx_.authorities(),
                                           .reachabilityTargets = {nginx_.uri()}});
    platform.console = console_;
    Platform::install(std::move(platform));
    KifoInitConfig configuration;
    configuration.bundle = {"com.example.kiosk"};
    configuration.apiUri = nginx_.uri() + "/getInAppCommunication";
    configuration.listenerUri = nginx_.uri() + "/sdkListenerEvent";
    configuration.authorization = "token";
    configuration.resendsWhenServerReturns = true;
    std::promise<void> answered;
    Kifo::initialize(configuration, [&] { answered.set_value(); });
    ASSERT_EQ(answered.get_future().wait_for(kBound), std::future_status::ready);
  }
  void TearDown() override {
    if (IsSkipped()) return;
    EXPECT_TRUE(Kifo::shutdown(10.0));
  }

  /// How often each of the events named so arrived.
  std::map<std::string, int> arrivals() const {
    std::map<std::string, int> counts;
    for (const auto& request : server_.requests().on("/sdkListenerEvent")) {
      const std::string name = request->text("name");
      if (name.starts_with("event")) ++counts[name];
    }
    return counts;
  }
  const TemporaryDirectory directory_;
  const std::shared_ptr<RecordingConsole> console_ = std::make_shared<RecordingConsole>();
  mutable LocalServer server_;
  Nginx nginx_;
};

TEST_P(NginxTest, EachOf300EventsArrivesOnceOverFewConnections) {
  constexpr int kAtOnce = 200;
  constexpr int kInAll = 300;
  for (int index = 0; index < kAtOnce; ++index) {
    KifoEventManager::sendEvent("event" + std::to_string(index), std::nullopt, {});
  }
  // One after another, each about when the server may close the connection of the one before.
  for (int index = kAtOnce; index < kInAll; ++index) {
    KifoEventManager::sendEvent("event" + std::to_string(index), std::nullopt, {});
    Kifo::waitUntilIdle(1.0);
  }
  Kifo::waitUntilIdle(10.0);
  // What met a closing connection waits in the store for the next event that gets through.
  for (int more = 0; more < 50 && arrivals().size() < kInAll; ++more) {
    KifoEventManager::sendEvent("more", std::nullopt, {});
    Kifo::waitUntilIdle(1.0);
  }
  const auto counts = arrivals();
  EXPECT_EQ(counts.size(), std::size_t{kInAll});
  for (const auto& [name, count] : counts) EXPECT_EQ(count, 1) << name;
  std::set<std::string> connections;
  for (const auto& request : nginx_.requests()) {
    connections.insert(request.connection);
    EXPECT_EQ(request.protocol, GetParam().protocol);
  }
  EXPECT_LE(connections.size(), GetParam().mostConnections);
}

constexpr std::size_t kAny = 1000;

INSTANTIATE_TEST_SUITE_P(
    Manners, NginxTest,
    ::testing::Values(
        Manner{"Http2", {}, "HTTP/2.0", 6}, Manner{"Http11", {.speaksHttp2 = false}, "HTTP/1.1", 6},
        // Not after an idle time: over HTTP/2 nginx would count the time before the
        // first request, and a busy machine could meet that twice.
        Manner{"Http2ThatClosesEarly", {.requestsPerConnection = 7}, "HTTP/2.0", kAny},
        Manner{"Http11ThatClosesEarly",
               {.speaksHttp2 = false, .requestsPerConnection = 7, .idleTimeout = "5ms"},
               "HTTP/1.1",
               kAny}),
    [](const auto& each) { return each.param.name; });

TEST(NginxProxyTest, TheProxyOfTheEnvironmentIsUsed) {
  if (!Nginx::whyNot().empty()) GTEST_SKIP() << Nginx::whyNot();
  const InstalledFakePlatform fake;
  LocalServer server;
  server.start();
  Nginx nginx;
  ASSERT_TRUE(nginx.start(server.port(), {}));
  setenv("http_proxy", nginx.proxy().c_str(), 1);
  CurlTransport transport;
  auto answer = answerTo(transport, {.method = "POST", .url = server.listenerUri()});
  EXPECT_EQ(answer.get().status, 200);
  unsetenv("http_proxy");
  const auto requests = server.requests().all();
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests.front()->header("X-Proxy"), "nginx");
}

}  // namespace
}  // namespace kifo::testing
