// kifo-demo: one day of a kiosk, and what its server received.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>

#include "apps/demo/headless/Scenario.h"
#include "testing/TemporaryDirectory.h"

namespace {

/// Removes `directory` when a signal ends the process. To be called before other threads are
/// started: they inherit the blocked signals.
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
  kifo::demo::Scenario scenario(home.path(), *network, verbose);
  const bool isComplete = scenario.run();
  if (!isComplete) std::cout << "  wrong: something that was waited for did not come" << std::endl;
  return scenario.judge() && isComplete ? 0 : 1;
}
