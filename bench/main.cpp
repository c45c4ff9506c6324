// Runs the benches, each in a process of its own so that none leaves anything behind for the next:
//   kifo_event_bench [caller] [store] [drain] [footprint] [shutdown]
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "bench/Benches.h"

int main(int argc, char** argv) {
  const std::vector<std::string> wanted(argv + 1, argv + argc);
  const std::vector<std::pair<std::string, void (*)()>> benches{
      {"caller", kifo::bench::callerBench},     {"store", kifo::bench::storeBench},
      {"drain", kifo::bench::drainBench},       {"footprint", kifo::bench::footprintBench},
      {"shutdown", kifo::bench::shutdownBench},
  };
  for (const auto& [name, run] : benches) {
    if (!wanted.empty() && std::ranges::find(wanted, name) == wanted.end()) continue;
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
      run();
      std::fflush(stdout);
      _exit(0);
    }
    waitpid(child, nullptr, 0);
  }
}
