#include "bench/BenchServer.h"

#include <httplib.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <new>
#include <thread>

namespace kifo::bench {
namespace {

constexpr auto kCampaigns =
    R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":1000000}})";

/// Serves until it is killed, or its parent is.
[[noreturn]] void serve(BenchServer::Manner manner, int ready,
                        std::atomic<std::uint64_t>& received) {
  httplib::Server server;
  server.set_keep_alive_max_count(1000000);
  server.set_tcp_nodelay(true);
  server.Post("/api", [](const httplib::Request&, httplib::Response& response) {
    response.set_content(kCampaigns, "application/json");
  });
  server.Post("/listener",
              [manner, &received](const httplib::Request&, httplib::Response& response) {
                ++received;
                using namespace std::chrono_literals;
                if (manner == BenchServer::Manner::fiftyMilliseconds)
                  std::this_thread::sleep_for(50ms);
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
  void* shared =
      mmap(nullptr, sizeof *received_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  received_ = new (shared) std::atomic<std::uint64_t>(0);
  int ready[2] = {};
  if (pipe(ready) != 0) return;
  process_ = fork();
  if (process_ == 0) serve(manner, ready[1], *received_);
  close(ready[1]);
  if (read(ready[0], &port_, sizeof port_) != sizeof port_) port_ = 0;
  close(ready[0]);
}

BenchServer::~BenchServer() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  munmap(received_, sizeof *received_);
}

std::string BenchServer::uri(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

}  // namespace kifo::bench
