#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "testing/simulation/Play.h"
#include "testing/simulation/Script.h"

namespace {

using namespace kifo::testing::simulation;

struct Options {
  std::uint64_t first = 1;
  std::uint64_t seeds = 1000;
  std::size_t length = 500;
  bool isUnshrunk = false;
};

constexpr auto kUsage =
    "usage: kifo_simulation [--seeds N] [--first SEED] [--length OPERATIONS] [--unshrunk 1]\n"
    "Plays N random worlds. A seed that fails is printed with its shortest script; it replays "
    "with\n"
    "--first SEED --seeds 1.\n";

bool read(int count, char** arguments, Options& options) {
  for (int index = 1; index < count; index += 2) {
    const std::string_view name = arguments[index];
    if (index + 1 == count) return false;
    const std::uint64_t number = std::strtoull(arguments[index + 1], nullptr, 10);
    if (name == "--seeds") {
      options.seeds = number;
    } else if (name == "--first") {
      options.first = number;
    } else if (name == "--length") {
      options.length = number;
    } else if (name == "--unshrunk") {
      options.isUnshrunk = number != 0;
    } else {
      return false;
    }
  }
  return true;
}

/// The invariant alone, without what it is about.
std::string invariantOf(const Outcome& outcome) {
  const std::string text = outcome.violation.value_or("");
  return text.substr(0, text.find(" ("));
}

void report(std::uint64_t seed, const Script& script, const Outcome& outcome, bool isUnshrunk) {
  std::printf("seed %llu: %s, after operation %zu of %zu\n", static_cast<unsigned long long>(seed),
              outcome.violation->c_str(), outcome.operation, script.size());
  if (isUnshrunk) return;
  const Script shortest = shrunk(script, [&](const Script& shorter) {
    return invariantOf(play(shorter)) == invariantOf(outcome);
  });
  std::printf("shortest script (%s):\n%s", play(shortest).violation->c_str(),
              text(shortest).c_str());
}

}  // namespace

int main(int count, char** arguments) {
  Options options;
  if (!read(count, arguments, options)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  // Without threads SQLite needs no locks and no statistics; that makes a world a tenth faster.
  sqlite3_config(SQLITE_CONFIG_SINGLETHREAD);
  sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  const auto begin = std::chrono::steady_clock::now();
  std::size_t steps = 0;
  for (std::uint64_t seed = options.first; seed < options.first + options.seeds; ++seed) {
    const Script script = randomScript(seed, options.length);
    const Outcome outcome = play(script);
    steps += outcome.steps;
    if (!outcome.violation) continue;
    report(seed, script, outcome, options.isUnshrunk);
    return 1;
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  std::printf("%llu worlds of %zu operations hold: %zu steps in %.1f s, %.0f per second\n",
              static_cast<unsigned long long>(options.seeds), options.length, steps,
              seconds.count(), static_cast<double>(steps) / seconds.count());
  return 0;
}
