#include "apps/kifo/host/HostCommand.h"

#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "apps/kifo/ToolkitOption.h"
#include "apps/kifo/host/Devices.h"
#include "apps/kifo/host/Host.h"
#include "apps/kifo/host/HostWindow.h"
#include "apps/kifo/host/Output.h"
#include "testing/TemporaryDirectory.h"

namespace kifo::tool {
namespace {

constexpr int kFatal = 3;

constexpr auto kFooter =
    "Carries out one JSON object per line and writes what happens, one JSON object per line. "
    "docs/tool.md "
    "has\n"
    "all lines. Without --home what is stored goes when the host ends. With --count the servers "
    "must\n"
    "be on this machine.\n\n"
    "Exit status: that of {\"exit\": status}, else 0; 2 after a line that was not understood, 3 "
    "after\n"
    "a mistake that is fatal to the SDK.\n\n"
    "  kifo host script.jsonl --home /tmp/device --decisions\n"
    "  echo '{\"get\": \"Kifo.initializeStatus\"}' | kifo host\n"
    "  kifo host script.jsonl --count 50 --rate 5";

struct Options {
  std::string script = "-";
  std::string home;
  Toolkit toolkit = Toolkit::widgets;
  bool writesDecisions = false;
  bool isLoopbackOnly = false;
  int count = 1;
  double rate = 10.0;
};

Output* fatalOutput = nullptr;

[[noreturn]] void endFatally(std::string_view message) {
  fatalOutput->error("Fatal error: " + std::string(message));
  _exit(kFatal);
}

int run(const Options& options, std::istream& script) {
  std::optional<testing::TemporaryDirectory> temporary;
  if (options.home.empty()) temporary.emplace();
  const auto output = std::make_shared<Output>(STDOUT_FILENO);
  fatalOutput = output.get();
  setFatalErrorHandler([](std::string_view message) { endFatally(message); });
  // A reader that goes away is noticed at the next line.
  std::signal(SIGPIPE, SIG_IGN);
  return runInWindow(output, options.toolkit, [&](HostWindow& window) {
    Host host({.home = temporary ? temporary->path() : options.home,
               .writesDecisions = options.writesDecisions,
               .isLoopbackOnly = options.isLoopbackOnly},
              output, window);
    return host.run(script);
  });
}

int run(const Options& options) {
  if (options.count > 1) {
    return runFleet({.script = options.script,
                     .home = options.home,
                     .writesDecisions = options.writesDecisions,
                     .count = options.count,
                     .rate = options.rate});
  }
  if (options.script == "-") return run(options, std::cin);
  std::ifstream script(options.script);
  if (!script) {
    std::cerr << "kifo host: " << options.script << " cannot be read\n";
    return 1;
  }
  return run(options, script);
}

}  // namespace

void addHostCommand(CLI::App& program, int& status) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("host", "The SDK in a host that a script drives");
  command->add_option("SCRIPT", options->script,
                      "Lines of JSON; - or nothing reads standard input");
  addToolkitOption(*command, options->toolkit);
  command->add_option("--home", options->home, "Keeps KifoLog.db and the user defaults here");
  command->add_flag("--decisions", options->writesDecisions,
                    "Writes what the SDK decides, and why");
  command
      ->add_option("--count", options->count,
                   "Runs the script as so many devices, in homes of their own")
      ->check(CLI::Range(1, 10000));
  command->add_option("--rate", options->rate, "Devices started in a second; 10 without it")
      ->check(CLI::Range(0.01, 1000.0));
  command->add_flag("--loopback-only", options->isLoopbackOnly)->group("");
  command->footer(kFooter);
  command->callback([options, &status] { status = run(*options); });
}

}  // namespace kifo::tool
