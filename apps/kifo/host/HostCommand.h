#pragma once

#include <CLI/CLI.hpp>

namespace kifo::tool {

/// Adds `kifo host`. Its exit status goes to `status`.
void addHostCommand(CLI::App& program, int& status);

}  // namespace kifo::tool
