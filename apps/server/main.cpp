// kifo-server: the local server as a command.
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <mutex>
#include <string>

#include "apps/server/LocalServer.h"

namespace {

constexpr auto usage = R"(usage: kifo-server [--port N] [--campaigns FILE|DIR] [--log FILE]
  Serves campaigns on /getInAppCommunication and takes events on /sdkListenerEvent of the loopback.
  Faults are read and set on /faults, what was received is read on /requests.
)";

struct Arguments {
  kifo::server::LocalServer::Options options;
  std::string campaigns;
  std::string log;
};

bool parse(int argc, char** argv, Arguments& arguments) {
  for (int i = 1; i < argc; i += 2) {
    const std::string option = argv[i];
    if (i + 1 == argc) return false;
    const std::string value = argv[i + 1];
    if (option == "--port") {
      arguments.options.port = std::atoi(value.c_str());
    } else if (option == "--campaigns") {
      arguments.campaigns = value;
    } else if (option == "--log") {
      arguments.log = value;
    } else {
      return false;
    }
  }
  return true;
}

int serve(const Arguments& arguments, const sigset_t& ends) {
  kifo::server::LocalServer server(arguments.options);
  if (!arguments.campaigns.empty()) server.campaigns().servePath(arguments.campaigns);
  if (const auto problem = server.campaigns().problem(); !problem.empty()) {
    std::cerr << "kifo-server: " << problem << '\n';
    return 1;
  }
  std::mutex mutex;
  std::ofstream log;
  if (!arguments.log.empty()) {
    log.open(arguments.log, std::ios::app);
    if (!log) {
      std::cerr << "kifo-server: cannot write to " << arguments.log << '\n';
      return 1;
    }
    server.observe([&](const kifo::server::ReceivedRequest& request) {
      const auto line =
          request.toJson().dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
      const std::lock_guard lock(mutex);
      log << line << std::endl;
    });
  }
  if (server.start() == 0) {
    std::cerr << "kifo-server: port " << arguments.options.port << " cannot be had\n";
    return 1;
  }
  std::cout << "ready " << server.uri() << std::endl;
  int signal = 0;
  sigwait(&ends, &signal);
  server.stop();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  if (!parse(argc, argv, arguments)) {
    std::cerr << usage;
    return 2;
  }
  // Blocked before any thread is made, so that only the wait below takes them.
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGTERM);
  sigaddset(&ends, SIGINT);
  pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  return serve(arguments, ends);
}
