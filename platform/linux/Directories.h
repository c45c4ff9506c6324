#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kifo {

/// The contents of a file of at most `limit` bytes. None if it cannot be read or is larger;
/// `error`, unless null, is set to the system's code or 0.
std::optional<std::string> readFile(const std::string& path, std::size_t limit = 64u << 10,
                                    int* error = nullptr);

/// Makes a directory and those above it, each with mode 0700 whatever the umask. One that exists is
/// left as it is. 0, or the system's code.
int makeDirectories(const std::string& path);

/// Gives a file of this user mode 0600, a directory 0700, if it exists.
void makePrivate(const std::string& path);

/// `text` without blanks and line breaks at its ends.
std::string trimmed(const std::string& text);

/// Where this program keeps its files by default (XDG Base Directory rules). Creates nothing.
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
