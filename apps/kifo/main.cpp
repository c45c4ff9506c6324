// kifo: the SDK in a tool.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "Kifo_iOS_Common_Kit/core/Version.h"
#include "apps/kifo/host/HostCommand.h"
#include "apps/kifo/log/LogCommand.h"
#include "apps/kifo/preview/PreviewCommand.h"
#include "apps/kifo/serve/ServeCommand.h"
#include "apps/kifo/watch/WatchCommand.h"

int main(int argc, char** argv) {
  CLI::App program("The customer-engagement SDK in a tool", "kifo");
  program.set_version_flag("--version", KIFO_VERSION);
  program.require_subcommand(1);
  int status = 0;
  kifo::tool::addServeCommand(program, status);
  kifo::tool::addPreviewCommand(program, status);
  kifo::tool::addLogCommand(program, status);
  kifo::tool::addWatchCommand(program, status);
  kifo::tool::addHostCommand(program, status);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : 64;
  } catch (const std::exception& error) {
    std::cerr << "kifo: " << error.what() << '\n';
    return 1;
  }
  return status;
}
