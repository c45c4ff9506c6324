#pragma once

#include <CLI/CLI.hpp>

namespace kifo::tool {

/// Adds `kifo preview`. Its exit status goes to `status`.
void addPreviewCommand(CLI::App& program, int& status);

}  // namespace kifo::tool
