#pragma once

#include <string>

namespace kifo::tool {

/// A home that goes with the process that made it.
///
/// **Errors:** throws `std::system_error` when none can be made.
class TemporaryHome {
 public:
  TemporaryHome();
  ~TemporaryHome();
  TemporaryHome(const TemporaryHome&) = delete;
  TemporaryHome& operator=(const TemporaryHome&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace kifo::tool
