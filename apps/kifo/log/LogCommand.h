#pragma once

#include <CLI/CLI.hpp>

namespace kifo::tool {

/// Adds `kifo log`. Its exit status goes to `status`.
void addLogCommand(CLI::App& program, int& status);

}  // namespace kifo::tool
