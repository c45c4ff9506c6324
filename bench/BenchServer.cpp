#include "bench/BenchServer.h"

#include <httplib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

namespace kifo::bench {
namespace {

constexpr auto kCampaigns =
    R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":1000000}})";

/// Serves until it is killed, or its parent is.
[[noreturn]] void serve(BenchServer::Manner manner, int ready) {
  httplib::Server server;
  server.set_keep_alive_max_count(1000000);
  server.set_tcp_nodelay(true);
  server.Post("/api", [](const httplib::Request&, httplib::Response& response) {
    response.set_content(kCampaigns, "application/json");
  });
  server.Post("/listener", [manner](const httplib::Request&, httplib::Response& response) {
    using namespace std::chrono_literals;
    if (manner == BenchServer::Manner::fiftyMilliseconds) std::this_thread::sleep_for(50ms);
    if (manner == BenchServer::Manner::mute) std::this_thread::sleep_for(1h);
    response.set_content(R"({"code":0})", "application/json");
  });
  const int port = server.bind_to_any_port("127.0.0.1");
  if (write(ready, &port, sizeof port) != sizeof port) _exit(1);
  close(ready);
  server.listen_after_bind();
  _exit(0);
}

}  // namespace

BenchServer::BenchServer(Manner manner) {
  int ready[2] = {};
  if (pipe(ready) != 0) return;
  process_ = fork();
  if (process_ == 0) serve(manner, ready[1]);
  close(ready[1]);
  if (read(ready[0], &port_, sizeof port_) != sizeof port_) port_ = 0;
  close(ready[0]);
}

BenchServer::~BenchServer() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

std::string BenchServer::uri(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

}  // namespace kifo::bench
