#pragma once

#include <string>

#include "testing/ChildProgram.h"
#include "testing/TemporaryDirectory.h"

namespace kifo::testing {

/// A session bus of its own, without any service, as long as the object exists. The user's own
/// desktop is not used.
///
/// **Errors:** where no bus can be had `address` is empty and `problem` says why.
class PrivateBus {
 public:
  PrivateBus();

  [[nodiscard]] const std::string& address() const { return address_; }
  /// Empty when there is a bus.
  [[nodiscard]] const std::string& problem() const { return problem_; }

 private:
  TemporaryDirectory directory_;
  ChildProgram daemon_;
  std::string address_;
  std::string problem_;
};

}  // namespace kifo::testing
