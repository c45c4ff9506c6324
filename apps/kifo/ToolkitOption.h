#pragma once

#include <CLI/CLI.hpp>

#include <map>
#include <string>

#include "apps/kifo/Toolkit.h"

namespace kifo::tool {

/// "--toolkit", which a command that shows popups has.
inline void addToolkitOption(CLI::App& command, Toolkit& toolkit) {
  static const std::map<std::string, Toolkit> toolkits{{"widgets", Toolkit::widgets},
                                                       {"quick", Toolkit::quick}};
  command.add_option("--toolkit", toolkit, "widgets or quick; widgets without it")
      ->transform(CLI::CheckedTransformer(toolkits));
}

}  // namespace kifo::tool
