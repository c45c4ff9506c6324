// Plays random worlds on all processors, and shows the shortest script of one that fails.
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "testing/simulation/Play.h"
#include "testing/simulation/Script.h"
#include "tests/simulation/KeptHandles.h"

namespace {

using namespace kifo::testing::simulation;

constexpr std::size_t kMostJobs = 64;

struct Options {
  std::uint64_t first = 1;
  std::uint64_t seeds = 1000;
  std::uint64_t length = 500;
  std::uint64_t jobs = std::thread::hardware_concurrency();
  /// In one world of so many the file is opened anew for each operation, as in a host.
  std::uint64_t opening = 8;
  std::uint64_t unshrunk = 0;
};

constexpr auto kUsage =
    "usage: kifo_simulation [--seeds N] [--first SEED] [--length OPERATIONS] [--jobs PROCESSES]\n"
    "                       [--opening N] [--unshrunk 1]\n"
    "Plays N random worlds. A seed that fails is printed with its shortest script; it replays\n"
    "with --first SEED --seeds 1. --opening N: in every Nth world the file is opened anew for\n"
    "each operation.\n";

/// What the processes share.
struct Shared {
  struct Job {
    std::atomic<std::uint64_t> seed = 0;  ///< Played now.
    std::atomic<std::uint64_t> steps = 0;
  };
  std::array<Job, kMostJobs> jobs;
  std::atomic<bool> hasFailed = false;
};

bool read(int count, char** arguments, Options& options) {
  constexpr std::array<std::pair<std::string_view, std::uint64_t Options::*>, 6> names{
      {{"--seeds", &Options::seeds},
       {"--first", &Options::first},
       {"--length", &Options::length},
       {"--jobs", &Options::jobs},
       {"--opening", &Options::opening},
       {"--unshrunk", &Options::unshrunk}}};
  for (int index = 1; index < count; index += 2) {
    const auto* found = std::ranges::find(names, std::string_view(arguments[index]),
                                          &decltype(names)::value_type::first);
    if (found == names.end() || index + 1 == count) return false;
    options.*(found->second) = std::strtoull(arguments[index + 1], nullptr, 10);
  }
  options.jobs = std::clamp<std::uint64_t>(options.jobs, 1, kMostJobs);
  options.opening = std::max<std::uint64_t>(options.opening, 1);
  return true;
}

/// The invariant alone, without what it is about.
std::string invariantOf(const Outcome& outcome) {
  const std::string text = outcome.violation.value_or("");
  return text.substr(0, text.find(" ("));
}

void report(std::uint64_t seed, const Script& script, const Outcome& outcome, bool isShrunk) {
  std::string lines = "seed " + std::to_string(seed) + ": " + *outcome.violation +
                      ", after operation " + std::to_string(outcome.operation) + " of " +
                      std::to_string(script.size()) + "\n";
  if (isShrunk) {
    const Script shortest = shrunk(script, [&](const Script& shorter) {
      return invariantOf(play(shorter)) == invariantOf(outcome);
    });
    lines += "shortest script (" + *play(shortest).violation + "):\n" + text(shortest);
  }
  std::fputs(lines.c_str(), stdout);
}

/// Plays every `options.jobs`th world; false when one failed.
bool playSome(const Options& options, std::uint64_t job, Shared& shared) {
  const std::uint64_t end = options.first + options.seeds;
  for (std::uint64_t seed = options.first + job; seed < end; seed += options.jobs) {
    if (shared.hasFailed) return true;
    shared.jobs[job].seed = seed;
    const Script script = randomScript(seed, options.length);
    keepHandles(seed % options.opening != 0);
    const Outcome outcome = play(script);
    shared.jobs[job].steps += outcome.steps;
    if (!outcome.violation) continue;
    shared.hasFailed = true;
    report(seed, script, outcome, options.unshrunk == 0);
    return false;
  }
  return true;
}

/// Plays all worlds in processes of their own: a world is alone in its process, and one that
/// crashes has its seed printed. False when one failed.
bool playAll(const Options& options, Shared& shared) {
  std::array<pid_t, kMostJobs> processes{};
  for (std::uint64_t job = 0; job < options.jobs; ++job) {
    processes[job] = fork();
    if (processes[job] < 0) std::perror("kifo_simulation: no process for the worlds");
    if (processes[job] != 0) continue;
    const bool holds = playSome(options, job, shared);
    std::exit(holds ? 0 : 1);
  }
  bool hold = true;
  for (std::uint64_t job = 0; job < options.jobs; ++job) {
    int status = -1;
    const bool hasEnded = processes[job] > 0 && waitpid(processes[job], &status, 0) > 0;
    hold = hold && hasEnded && status == 0;
    if (!hasEnded || !WIFSIGNALED(status)) continue;
    shared.hasFailed = true;
    std::printf("seed %llu: ends with signal %d\n",
                static_cast<unsigned long long>(shared.jobs[job].seed), WTERMSIG(status));
  }
  return hold;
}

}  // namespace

int main(int count, char** arguments) {
  Options options;
  if (!read(count, arguments, options)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  void* memory =
      mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return 2;
  auto& shared = *new (memory) Shared;
  // Without threads SQLite needs no locks and no statistics; that makes a world a tenth faster.
  sqlite3_config(SQLITE_CONFIG_SINGLETHREAD);
  sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  const auto begin = std::chrono::steady_clock::now();
  if (!playAll(options, shared)) return 1;
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  std::uint64_t steps = 0;
  for (const auto& job : shared.jobs) steps += job.steps;
  std::printf("%llu worlds of %llu operations hold: %llu steps in %.1f s, %.0f per second\n",
              static_cast<unsigned long long>(options.seeds),
              static_cast<unsigned long long>(options.length),
              static_cast<unsigned long long>(steps), seconds.count(),
              static_cast<double>(steps) / seconds.count());
  return 0;
}
