#pragma once

#include <string>

namespace kifo {

/// What went wrong, as a value. Nothing in the SDK throws to its host; operations hand one of these
/// to their completion instead.
///
/// **Threading:** a plain value.
struct Error {
  std::string domain;   ///< Who says so: "http", "sqlite", "file", a host's own domain.
  int code = 0;         ///< The domain's own number.
  std::string message;  ///< One line in plain words.

  friend bool operator==(const Error&, const Error&) = default;
};

}  // namespace kifo
