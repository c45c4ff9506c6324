#pragma once

#include <string>

namespace kifo {

/// Where a program of this system keeps things by default, by the rules that desktops share. Only
/// looked at, nothing is made.
///
/// **Threading:** reads the environment: while the host is not changing it.
struct Directories {
  std::string program;    ///< The running program's name.
  std::string documents;  ///< `$XDG_DATA_HOME/<program>/kifo`, ~/.local/share for an unset one.
  std::string temporary;  ///< `$XDG_CACHE_HOME/<program>/kifo`, ~/.cache for an unset one.
  /// Why `documents` is one below the system's temporary directory instead; empty when it is not.
  std::string problem;

  static Directories ofThisProcess();
};

}  // namespace kifo
