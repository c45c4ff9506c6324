#pragma once

#include <string>

namespace kifo::testing {

/// A fresh directory, removed with all that is in it at the end.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  /// Below `parent`.
  explicit TemporaryDirectory(const std::string& parent);
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  /// The path of `name` in the directory.
  [[nodiscard]] std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace kifo::testing
