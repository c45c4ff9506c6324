#pragma once

#include <CLI/CLI.hpp>

namespace kifo::tool {

/// `kifo watch`: looks into a host while it runs.
void addWatchCommand(CLI::App& program, int& status);

}  // namespace kifo::tool
