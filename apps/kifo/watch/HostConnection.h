#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kifo::tool {

/// A connection to a host that can be looked into.
///
/// **Threading:** one thread.
/// **Errors:** throws `std::runtime_error` with one line in plain words.
class HostConnection {
 public:
  /// Connects to process `pid` and reads its greeting.
  HostConnection(const std::string& directory, int pid);
  ~HostConnection();
  HostConnection(const HostConnection&) = delete;
  HostConnection& operator=(const HostConnection&) = delete;

  /// The greeting's line of JSON.
  [[nodiscard]] const std::string& greeting() const { return greeting_; }

  /// "state" or "follow".
  void ask(const std::string& command);

  /// The lines that came within `milliseconds`, possibly none; none at all once the host is gone.
  std::optional<std::vector<std::string>> lines(int milliseconds);

 private:
  std::vector<std::string> takeLines();

  int descriptor_ = -1;
  std::string input_;
  std::string greeting_;
};

}  // namespace kifo::tool
