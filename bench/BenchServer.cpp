#include "bench/BenchServer.h"

#include <microhttpd.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <new>
#include <string_view>
#include <thread>

namespace kifo::bench {
namespace {

constexpr auto kCampaigns =
    R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":1000000}})";

struct Service {
  BenchServer::Manner manner;
  std::atomic<std::uint64_t>& received;
};

MHD_Result answer(void* context, MHD_Connection* connection, const char* path, const char*,
                  const char*, const char*, std::size_t* size, void** begun) {
  if (*begun == nullptr || *size > 0) {  // More of the request is to come.
    *begun = context;
    *size = 0;
    return MHD_YES;
  }
  auto& service = *static_cast<Service*>(context);
  std::string_view body = kCampaigns;
  if (std::string_view(path) == "/listener") {
    using namespace std::chrono_literals;
    ++service.received;
    if (service.manner == BenchServer::Manner::fiftyMilliseconds) std::this_thread::sleep_for(50ms);
    if (service.manner == BenchServer::Manner::mute) std::this_thread::sleep_for(1h);
    body = R"({"code":0})";
  }
  MHD_Response* response = MHD_create_response_from_buffer(
      body.size(), const_cast<char*>(body.data()), MHD_RESPMEM_PERSISTENT);
  MHD_add_response_header(response, "Content-Type", "application/json");
  const MHD_Result result = MHD_queue_response(connection, MHD_HTTP_OK, response);
  MHD_destroy_response(response);
  return result;
}

/// Serves until it is killed.
[[noreturn]] void serve(BenchServer::Manner manner, int ready,
                        std::atomic<std::uint64_t>& received) {
  Service service{manner, received};
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  MHD_Daemon* daemon =
      MHD_start_daemon(MHD_USE_THREAD_PER_CONNECTION | MHD_USE_POLL_INTERNAL_THREAD, 0, nullptr,
                       nullptr, answer, &service, MHD_OPTION_SOCK_ADDR, &address,
                       MHD_OPTION_CONNECTION_MEMORY_LIMIT, std::size_t{128} << 10, MHD_OPTION_END);
  const int port =
      daemon == nullptr ? 0 : MHD_get_daemon_info(daemon, MHD_DAEMON_INFO_BIND_PORT)->port;
  if (write(ready, &port, sizeof port) != sizeof port) _exit(1);
  close(ready);
  while (true) pause();
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
