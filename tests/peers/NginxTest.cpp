// The whole SDK on this system's services, against a server that others wrote.
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <future>
#include <map>
#include <set>
#include <sstream>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/http/CurlTransport.h"
#include "testing/ChildProgram.h"
#include "testing/server/LocalServer.h"
#include "tests/support/Certificate.h"
#include "tests/support/Sockets.h"

namespace kifo::testing {
namespace {

/// nginx in front of a server of this machine: by TLS with a certificate of a private authority,
/// and as a proxy for plain requests.
///
/// **Threading:** externally synchronised. **Errors:** `start` is false when it does not come up.
class Nginx {
 public:
  struct Options {
    bool speaksHttp2 = true;
    int requestsPerConnection = 1000;  ///< Then it closes the connection.
    std::string idleTimeout = "60s";   ///< Then it closes the connection.
  };

  /// One request, as nginx logged it.
  struct Request {
    std::string connection;  ///< A number, one for each connection.
    std::string protocol;    ///< "HTTP/2.0"
  };

  /// Why there is none on this machine; empty when there is one. Tests skip with this reason.
  static std::string whyNot() {
    return access(kProgram, X_OK) == 0 ? "" : "nginx is not installed (package nginx-light)";
  }

  /// Passes what it gets on to the port of this machine.
  bool start(int port, const Options& options) {
    {
      const ListeningSocket one, other;  // their ports are free again then
      port_ = one.port();
      proxyPort_ = other.port();
    }
    std::ofstream(authorities()) << authority_.pem();
    std::ofstream(directory_.file("server.pem")) << certificate_.pem();
    std::ofstream(directory_.file("server.key")) << certificate_.keyPem();
    std::ofstream(directory_.file("nginx.conf"))
        << "daemon off; master_process off; pid nginx.pid; error_log /dev/stdout notice;\n"
           "events { worker_connections 256; }\n"
           "http {\n"
           "  client_body_temp_path body; proxy_temp_path proxy; fastcgi_temp_path fastcgi;\n"
           "  uwsgi_temp_path uwsgi; scgi_temp_path scgi;\n"
           "  log_format each '$connection $server_protocol';\n"
           "  access_log requests each;\n"
           "  large_client_header_buffers 4 64k; client_max_body_size 0;\n"
        << "  keepalive_requests " << options.requestsPerConnection << ";\n"
        << "  keepalive_timeout " << options.idleTimeout << ";\n"
        << "  server {\n"
        << "    listen 127.0.0.1:" << port_ << " ssl" << (options.speaksHttp2 ? " http2" : "")
        << ";\n"
           "    ssl_certificate server.pem; ssl_certificate_key server.key;\n"
        << "    location / { proxy_pass http://127.0.0.1:" << port
        << "; }\n"
           "  }\n"
        << "  server {\n"
        << "    listen 127.0.0.1:" << proxyPort_
        << ";\n"
           "    location / { proxy_pass http://$http_host$request_uri;"
           " proxy_set_header X-Proxy nginx; }\n"
           "  }\n"
           "}\n";
    program_.start({kProgram, "-p", directory_.path(), "-c", "nginx.conf", "-e", "stderr"});
    for (std::string line = program_.readLine(); !line.empty(); line = program_.readLine()) {
      if (line.find("getrlimit") != std::string::npos) return true;  // it listens before it says so
    }
    return false;
  }

  [[nodiscard]] std::string uri() const { return "https://127.0.0.1:" + std::to_string(port_); }
  /// Adds the header "X-Proxy: nginx" to what passes through.
  [[nodiscard]] std::string proxy() const {
    return "http://127.0.0.1:" + std::to_string(proxyPort_);
  }
  /// A file of the authority that vouches for it.
  [[nodiscard]] std::string authorities() const { return directory_.file("authorities.pem"); }
  /// What it has answered so far.
  [[nodiscard]] std::vector<Request> requests() const {
    std::vector<Request> all;
    std::ifstream log(directory_.file("requests"));
    for (std::string line; std::getline(log, line);) {
      Request request;
      std::istringstream(line) >> request.connection >> request.protocol;
      all.push_back(std::move(request));
    }
    return all;
  }

 private:
  static constexpr auto kProgram = "/usr/sbin/nginx";

  const TemporaryDirectory directory_;
  const Certificate authority_{{.isAuthority = true}};
  const Certificate certificate_{{}, &authority_};
  int port_ = 0;
  int proxyPort_ = 0;
  ChildProgram program_;
};

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
