// kifo-demo: a day of a kiosk, and the server's view of it.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>

#include "apps/demo/headless/Day.h"
#include "testing/TemporaryDirectory.h"

namespace {

/// Has an interruption end the process without leaving its files behind. To be called before other
/// threads are started, for they inherit that they are not to be interrupted.
void removeWhenInterrupted(const std::string& directory) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals, directory] {
    int signal = 0;
    sigwait(&signals, &signal);
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
    std::_Exit(128 + signal);
  }).detach();
}

}  // namespace

int main(int argc, char** argv) {
  const bool verbose = argc == 2 && std::string_view(argv[1]) == "--verbose";
  if (argc > 1 && !verbose) {
    std::cerr << "usage: kifo-demo [--verbose]\n  --verbose  shows the SDK's console lines too\n";
    return 2;
  }
  const kifo::testing::TemporaryDirectory home;
  removeWhenInterrupted(home.path());
  const auto network = kifo::demo::Network::make();
  kifo::demo::Day day(home.path(), *network, verbose);
  const bool lived = day.live();
  if (!lived) std::cout << "  wrong: something that was waited for did not come" << std::endl;
  return day.judge() && lived ? 0 : 1;
}
