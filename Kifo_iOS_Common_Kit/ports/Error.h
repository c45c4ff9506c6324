#pragma once

#include <string>

namespace kifo {

/// An error as a value. The SDK never throws to its host; operations pass one of these to their
/// completion.
///
/// **Threading:** a plain value.
struct Error {
  std::string domain;   ///< Where the code comes from: "http", "sqlite", "file", a host's domain.
  int code = 0;         ///< The domain's own number.
  std::string message;  ///< One line of text.

  friend bool operator==(const Error&, const Error&) = default;
};

}  // namespace kifo
