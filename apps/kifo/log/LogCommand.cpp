#include "apps/kifo/log/LogCommand.h"

#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "apps/kifo/ReadJson.h"
#include "apps/kifo/Terminal.h"
#include "apps/kifo/log/StoredRequests.h"

namespace kifo::tool {
namespace {

constexpr std::size_t kEventColumns = 32;

struct Options {
  std::string home;
  std::optional<std::int64_t> row;
};

/// Such as "3 min": the two or three digits that matter of an age.
std::string age(std::int64_t seconds) {
  if (seconds < 0) return "in the future";
  if (seconds < 60) return std::to_string(seconds) + " s";
  if (seconds < 3600) return std::to_string(seconds / 60) + " min";
  if (seconds < 86400) return std::to_string(seconds / 3600) + " h";
  return std::to_string(seconds / 86400) + " days";
}

std::string moment(std::int64_t date) {
  const auto seconds = static_cast<std::time_t>(date);
  std::tm local{};
  char text[32] = "";
  if (localtime_r(&seconds, &local) != nullptr) {
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  }
  return text;
}

void printTable(const std::vector<StoredRequest>& requests, const Terminal& terminal) {
  if (requests.empty()) {
    std::cout << "Nothing is stored.\n";
    return;
  }
  const std::int64_t now = std::time(nullptr);
  std::cout << terminal.paint(Terminal::Color::grey, "    ID  " +
                                                         Terminal::fitted("EVENT", kEventColumns) +
                                                         "  AGE            TRIED  SYNCHRONISED")
            << '\n';
  for (const auto& each : requests) {
    const std::string id = std::to_string(each.id);
    std::cout << std::string(id.size() < 6 ? 6 - id.size() : 0, ' ') << id << "  "
              << Terminal::fitted(each.event().value_or("(no name)"), kEventColumns) << "  "
              << Terminal::fitted(age(now - each.date), 13) << "  "
              << Terminal::fitted(std::to_string(each.tryCount), 5) << "  "
              << (each.isSynchronised ? "yes" : "no") << '\n';
  }
}

void printWhole(const StoredRequest& request) {
  const auto json = readJson(request.parameters);
  const auto parameters =
      json.is_discarded()
          ? Terminal::plain(request.parameters) + "   (this is no JSON, or nested too deeply)"
          : json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
  std::cout << "id            " << request.id << "\nrequest       "
            << Terminal::plain(request.requestId) << "\nmethod        "
            << Terminal::plain(request.httpMethod) << "\nstored        " << moment(request.date)
            << (request.wasOffline ? ", without a network" : "") << "\ntried         "
            << request.tryCount << "\nsynchronised  " << (request.isSynchronised ? "yes" : "no")
            << "\nurl           " << Terminal::plain(request.url) << "\nparameters    "
            << parameters << '\n';
}

/// A campaign's budget is a whole number, kept under its uuid alone.
bool isBudget(const std::string& key, const nlohmann::json& value) {
  return value.is_number_integer() && !key.starts_with("kifo_");
}

/// Prints the values for which `belongs` holds, or `none`.
void printValues(const nlohmann::json& values, const char* none,
                 const std::function<bool(const std::string&, const nlohmann::json&)>& belongs) {
  bool hasAny = false;
  for (const auto& [key, value] : values.items()) {
    if (!belongs(key, value)) continue;
    const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
    std::cout << "  " << Terminal::fitted(key, 40) << "  " << Terminal::plain(text) << '\n';
    hasAny = true;
  }
  if (!hasAny) std::cout << "  " << none << '\n';
}

/// What the user defaults hold: who the user is taken for, and the shows that are left of each
/// campaign.
void printDefaults(const std::string& home) {
  std::ifstream file(home + "/defaults.json");
  auto values = nlohmann::json::parse(file, nullptr, /*allow_exceptions=*/false);
  if (!values.is_object()) values = nlohmann::json::object();
  std::cout << "\nThe user\n";
  printValues(values, "nothing is known of the user", std::not_fn(isBudget));
  std::cout << "\nShows left\n";
  printValues(values, "no campaign was shown yet", isBudget);
}

/// False when the user has not chosen there.
bool printConsent(const std::string& home) {
  const auto has = [&](const char* name) { return std::filesystem::exists(home + "/" + name); };
  const bool isErasing = has("consent.erasing");
  const char* choice = has("consent.given")                  ? "given"
                       : has("consent.refused") || isErasing ? "refused"
                                                             : nullptr;
  std::cout << "Consent\n  " << (choice ? choice : "the user was not asked")
            << (isErasing ? "; the next start of the host erases what is left here" : "") << "\n\n";
  return choice != nullptr;
}

void printCounters(const StoredRequests& stored) {
  std::cout << "\nCounted since the file was made\n";
  const auto counters = stored.counters();
  for (const auto& [name, value] : counters) {
    std::cout << "  " << Terminal::fitted(name, 40) << "  " << value << '\n';
  }
  if (counters.empty()) std::cout << "  nothing\n";
}

bool printHealth(const StoredRequests& stored, std::size_t rows, const Terminal& terminal) {
  const std::string integrity = stored.integrity();
  const bool isSound = integrity == "ok";
  std::error_code ignored;
  const auto size = std::filesystem::file_size(stored.path(), ignored);
  std::cout << "\nThe file\n  " << stored.path() << "\n  " << size << " bytes, " << rows
            << (rows == 1 ? " request\n  " : " requests\n  ")
            << terminal.paint(isSound ? Terminal::Color::green : Terminal::Color::red,
                              isSound ? "sound" : Terminal::plain(integrity))
            << '\n';
  if (stored.wasInterrupted()) {
    std::cout << "  a write was interrupted; the next start of the host takes it back\n";
  }
  return isSound;
}

int run(const Options& options) {
  const Terminal terminal(STDOUT_FILENO);
  if (!options.row && printConsent(options.home) && !StoredRequests::exist(options.home)) {
    std::cout << "No requests are stored.\n";
    printDefaults(options.home);
    return 0;
  }
  const StoredRequests stored(options.home);
  if (options.row) {
    const auto request = stored.row(*options.row);
    if (!request) {
      std::cerr << "kifo log: there is no request with the id " << *options.row << '\n';
      return 1;
    }
    printWhole(*request);
    return 0;
  }
  const auto requests = stored.all();
  printTable(requests, terminal);
  printDefaults(options.home);
  printCounters(stored);
  return printHealth(stored, requests.size(), terminal) ? 0 : 1;
}

}  // namespace

void addLogCommand(CLI::App& program, int& status) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("log", "All that a host has stored; reads only");
  command->add_option("--home", options->home, "The folder of the host's KifoLog.db")->required();
  command->add_option("--row", options->row, "Prints the request with this id as a whole");
  command->footer(
      "Reads also while a host runs. The exit status is 1 when there is no database, no such row,\n"
      "or when the file is damaged.\n\n"
      "  kifo log --home ~/.local/share/shop/kifo\n"
      "  kifo log --home /tmp/device --row 3");
  command->callback([options, &status] { status = run(*options); });
}

}  // namespace kifo::tool
