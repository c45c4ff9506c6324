#include "bench/Runner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "bench/Table.h"

namespace kifo::bench {

int runBenches(int argc, char** argv, const Benches& benches) {
  std::vector<std::string> wanted(argv + 1, argv + argc);
  if (std::erase(wanted, "--json") > 0) printJson();
  int result = 0;
  for (const auto& [name, run] : benches) {
    if (!wanted.empty() && std::ranges::find(wanted, name) == wanted.end()) continue;
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
      run();
      std::fflush(stdout);
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0) {
      std::fprintf(stderr, "the bench %s broke off\n", name.c_str());
      result = 1;
    }
  }
  return result;
}

}  // namespace kifo::bench
