#include "apps/kifo/serve/ServeCommand.h"

#include <csignal>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "apps/kifo/serve/EventPrinter.h"
#include "testing/server/LocalServer.h"

namespace kifo::tool {
namespace {

struct Options {
  int port = 0;
  std::string campaigns;
  std::string log;
  // The faults as they are written; empty ones are not set.
  double latency = 0.0;
  int status = 0;
  int everyOther = 0;
  std::string body, connection, on;
  std::uint64_t times = 0;
};

testing::Faults faultsOf(const Options& options) {
  Value::Map named{{"latency", options.latency}};
  if (options.status != 0) named["status"] = options.status;
  if (options.everyOther != 0) named["everyOther"] = options.everyOther;
  if (!options.body.empty()) named["body"] = options.body;
  if (!options.connection.empty()) named["connection"] = options.connection;
  if (!options.on.empty()) named["on"] = options.on;
  if (options.times != 0) named["times"] = options.times;
  std::string problem;
  const auto faults = testing::Faults::fromValue(std::move(named), problem);
  if (!faults) throw std::runtime_error(problem);
  return *faults;
}

/// The signals that end the server. Blocked before any thread is made, so that only the wait for
/// them takes them.
sigset_t blockedEnds() {
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGTERM);
  sigaddset(&ends, SIGINT);
  pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  return ends;
}

int run(const Options& options) {
  const sigset_t ends = blockedEnds();
  EventPrinter printer(options.log);
  testing::LocalServer server(testing::LocalServer::Options{.port = options.port});
  server.setFaults(faultsOf(options));
  if (!options.campaigns.empty()) server.campaigns().servePath(options.campaigns);
  if (const auto problem = server.campaigns().problem(); !problem.empty()) {
    throw std::runtime_error(problem);
  }
  server.observe([&](const testing::ReceivedRequest& request) { printer.received(request); });
  if (server.start() == 0) {
    throw std::runtime_error("port " + std::to_string(options.port) + " cannot be had");
  }
  std::cout << "ready " << server.uri() << std::endl;
  std::cerr << "  in-app query  " << server.apiUri() << "\n  events        " << server.listenerUri()
            << "\n  faults        " << server.uri() << "/faults\n";
  int signal = 0;
  sigwait(&ends, &signal);
  server.stop();
  return 0;
}

}  // namespace

void addServeCommand(CLI::App& program, int& status) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("serve", "A local server for the SDK");
  command->add_option("--port", options->port, "0, as without it: a free one")
      ->check(CLI::Range(0, 65535));
  command->add_option("--campaigns", options->campaigns,
                      "A JSON answer, or a folder of them; read again when they change");
  command->add_option("--log", options->log, "Appends each request to this file as a line of JSON");
  command->add_option("--latency", options->latency, "Seconds by which each answer is late")
      ->check(CLI::NonNegativeNumber);
  command->add_option("--status", options->status, "Answers this in place of 200");
  command->add_option("--every-other", options->everyOther,
                      "Answers every second request with this");
  command->add_option("--body", options->body, "truncated, invalid-utf8, empty or huge");
  command->add_option("--connection", options->connection,
                      "drop, or die in the middle of an answer");
  command->add_option("--on", options->on, "Which requests have faults: all, api or listener");
  command->add_option("--times", options->times, "How many requests have faults; all without it");
  command->footer(
      "Prints \"ready ADDRESS\", then a line for each request, until it is interrupted.\n"
      "Faults can be changed while it runs: POST a JSON object to /faults. GET /requests gives "
      "all\n"
      "that was received.\n\n"
      "  kifo serve --port 8080 --campaigns samples/campaigns --log events.jsonl\n"
      "  kifo serve --latency 2 --every-other 500\n"
      "  curl -d '{\"connection\": \"drop\", \"times\": 3}' http://127.0.0.1:8080/faults");
  command->callback([options, &status] { status = run(*options); });
}

}  // namespace kifo::tool
