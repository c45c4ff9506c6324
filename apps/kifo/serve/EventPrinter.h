#pragma once

#include <fstream>
#include <mutex>
#include <string>

#include "apps/kifo/Terminal.h"
#include "testing/server/ReceivedRequest.h"

namespace kifo::tool {

/// Prints what a server receives, a line for each request, and keeps it as JSON lines.
///
/// **Threading:** `received` may be called from many threads at once.
class EventPrinter {
 public:
  /// `log` is the file that lines are added to; empty for none.
  /// **Errors:** throws `std::runtime_error` when it cannot be written to.
  explicit EventPrinter(const std::string& log);

  void received(const testing::ReceivedRequest& request);

 private:
  [[nodiscard]] std::string line(const testing::ReceivedRequest& request) const;

  const Terminal terminal_;
  std::mutex mutex_;
  std::ofstream log_;  // guarded by mutex_
};

}  // namespace kifo::tool
