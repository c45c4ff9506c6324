#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kifo {

/// A whole small file, as /etc, /sys and the SDK's own directory hold them. None, with the system's
/// code in `error` when that is asked for, if it cannot be read or has more than `limit` bytes.
std::optional<std::string> readFile(const std::string& path, std::size_t limit = 64u << 10,
                                    int* error = nullptr);

/// Makes a directory and those above it, for this user alone. 0, or the system's code.
int makeDirectories(const std::string& path);

/// `text` without blanks and line breaks at its ends.
std::string trimmed(const std::string& text);

}  // namespace kifo
