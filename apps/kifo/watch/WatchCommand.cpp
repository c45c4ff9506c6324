#include "apps/kifo/watch/WatchCommand.h"

#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/kifo/ReadJson.h"
#include "apps/kifo/Terminal.h"
#include "apps/kifo/watch/HostConnection.h"
#include "apps/kifo/watch/WatchView.h"
#include "platform/linux/watch/WatchSocket.h"

namespace kifo::tool {
namespace {

using Clock = std::chrono::steady_clock;

/// How long decisions are gathered before they are written.
constexpr int kGathering = 100;  // milliseconds
constexpr auto kSummaryPeriod = std::chrono::seconds(2);
constexpr auto kClearLine = "\r\033[K";

volatile sig_atomic_t isInterrupted = 0;

struct Options {
  std::string host;
  std::string directory;
  WatchView::Filter filter;
  bool isJson = false;
  bool isList = false;
  bool isStateOnly = false;
};

struct RunningHost {
  int pid = 0;
  std::string application;
  std::string sdk;
  std::string greeting;
};

std::string member(const nlohmann::json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

std::vector<RunningHost> runningHosts(const std::string& directory) {
  std::vector<RunningHost> hosts;
  for (const int pid : WatchSocket::processes(directory)) {
    try {
      const HostConnection connection(directory, pid);
      const auto greeting = readJson(connection.greeting());
      hosts.push_back(
          {pid, member(greeting, "application"), member(greeting, "sdk"), connection.greeting()});
    } catch (const std::runtime_error&) {
      // It ended meanwhile.
    }
  }
  return hosts;
}

void list(const std::vector<RunningHost>& hosts, const Options& options) {
  if (hosts.empty() && !options.isJson) {
    std::cout << "No host can be looked into. One that was started with KIFO_WATCH=1 can.\n";
  }
  for (const RunningHost& host : hosts) {
    if (options.isJson) {
      auto line = readJson(host.greeting);
      line["pid"] = host.pid;
      std::cout << line.dump() << '\n';
    } else {
      std::cout << "  " << Terminal::fitted(std::to_string(host.pid), 8) << "  "
                << Terminal::fitted(host.application, 28) << "  " << Terminal::plain(host.sdk)
                << '\n';
    }
  }
}

/// The process that is meant: a number, an application's name, or the only one that runs.
std::optional<int> chosen(const std::vector<RunningHost>& hosts, const std::string& host) {
  std::vector<int> fitting;
  for (const RunningHost& each : hosts) {
    if (host.empty() || host == each.application || host == std::to_string(each.pid)) {
      fitting.push_back(each.pid);
    }
  }
  return fitting.size() == 1 ? std::optional(fitting.front()) : std::nullopt;
}

/// Writes what a person reads; on a terminal with the counters on the last line.
class Follower {
 public:
  Follower(HostConnection& host, const Options& options)
      : host_(host), options_(options), view_(terminal_, options.filter) {}

  int run() {
    host_.ask("state");
    if (!options_.isStateOnly) host_.ask("follow");
    while (isInterrupted == 0) {
      const auto lines = host_.lines(kGathering);
      if (!lines) return ended();
      if (options_.isJson) {
        for (const auto& line : *lines) std::cout << line << '\n';
      } else {
        show(*lines);
      }
      std::cout.flush();
      if (!std::cout || isDone(*lines)) return 0;
    }
    return 0;
  }

 private:
  int ended() {
    if (!options_.isJson) std::cout << "\nThe host has ended.\n";
    return 0;
  }

  [[nodiscard]] bool isDone(const std::vector<std::string>& lines) const {
    return options_.isStateOnly && !lines.empty();
  }

  void show(const std::vector<std::string>& lines) {
    for (const auto& line : lines) take(readJson(line));
    const auto now = Clock::now();
    if (gathered_.empty() || now - gatheredAt_ < std::chrono::milliseconds(kGathering)) {
      if (gathered_.empty()) gatheredAt_ = now;
    } else {
      clearSummary();
      for (const auto& row : view_.rows(gathered_)) std::cout << row << '\n';
      gathered_.clear();
      gatheredAt_ = now;
      writeSummary();
    }
    if (!terminal_.isTerminal() || options_.isStateOnly || now < nextSummary_) return;
    nextSummary_ = now + kSummaryPeriod;
    host_.ask("state");
  }

  void take(nlohmann::json line) {
    if (!line.is_object()) return;
    if (member(line, "kind") != "state") return gathered_.push_back(std::move(line));
    clearSummary();
    const std::string whole = view_.state(line);
    if (!hasState_) std::cout << whole << '\n';
    hasState_ = true;
    summary_ = WatchView::summary(line);
    writeSummary();
  }

  void clearSummary() const {
    if (terminal_.isTerminal()) std::cout << kClearLine;
  }
  void writeSummary() const {
    if (terminal_.isTerminal()) std::cout << terminal_.paint(Terminal::Color::grey, summary_);
  }

  HostConnection& host_;
  const Options& options_;
  const Terminal terminal_{STDOUT_FILENO};
  WatchView view_;
  std::vector<nlohmann::json> gathered_;
  Clock::time_point gatheredAt_ = Clock::now();
  Clock::time_point nextSummary_ = Clock::now() + kSummaryPeriod;
  std::string summary_;
  bool hasState_ = false;
};

int run(const Options& options) {
  const std::string directory =
      options.directory.empty() ? WatchSocket::defaultDirectory() : options.directory;
  const auto hosts = runningHosts(directory);
  const auto pid = chosen(hosts, options.host);
  if (options.isList || (options.host.empty() && !pid)) {
    list(hosts, options);
    return options.isList || !hosts.empty() ? 0 : 1;
  }
  if (!pid) {
    std::cerr << "kifo watch: no host, or more than one, is called \"" << options.host << "\"\n";
    list(hosts, options);
    return 1;
  }
  HostConnection host(directory, *pid);
  if (options.isJson) std::cout << host.greeting() << '\n';
  struct sigaction action {};
  action.sa_handler = [](int) { isInterrupted = 1; };
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  return Follower(host, options).run();
}

}  // namespace

void addWatchCommand(CLI::App& program, int& status) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("watch", "Looks into a host while it runs");
  command->add_option("HOST", options->host,
                      "The process id or the application's name; not needed for the only one");
  command->add_flag("--list", options->isList, "Lists the hosts that can be looked into");
  command->add_flag("--state", options->isStateOnly, "Prints the state once");
  command->add_flag("--json", options->isJson, "The host's lines of JSON, for scripts");
  command->add_option("--event", options->filter.event, "Only what concerns events of this name");
  command->add_option("--campaign", options->filter.campaign,
                      "Only what concerns the campaign of this uuid or name");
  command->add_option("--directory", options->directory,
                      "Where the sockets are, if not in $XDG_RUNTIME_DIR/kifo");
  command->footer(
      "A host can be looked into when it was started with KIFO_WATCH=1 or calls\n"
      "Kifo::enableWatching(), by the same user. Nothing in it can be changed.\n\n"
      "  kifo watch\n"
      "  kifo watch shop --event basket_opened\n"
      "  kifo watch 4711 --json | jq 'select(.kind == \"notStored\")'");
  command->callback([options, &status] { status = run(*options); });
}

}  // namespace kifo::tool
