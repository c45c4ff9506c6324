#pragma once

#include <CLI/CLI.hpp>

namespace kifo::tool {

/// Adds `kifo serve`. Its exit status goes to `status`.
void addServeCommand(CLI::App& program, int& status);

}  // namespace kifo::tool
