#pragma once

#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "bench/BenchServer.h"

namespace kifo::bench {

/// The SDK on its real services in a directory of its own, with a console that drops its lines.
class BenchHost {
 public:
  explicit BenchHost(const BenchServer& server);
  ~BenchHost();

  /// Initialises and waits for the first answer, and for those of the start-up events unless the
  /// server never gives them; microseconds that `initialize` took.
  double start(bool settles = true);
  void setOnline(bool online);
  /// Waits until all that is queued has been dealt with.
  static void waitUntilIdle();
  [[nodiscard]] std::string databasePath() const { return directory_ + "/KifoLog.db"; }
  [[nodiscard]] const std::string& directory() const { return directory_; }

  /// Twenty parameters as a host's event has them.
  static EventParameters parameters();

 private:
  std::string apiUri_;
  std::string listenerUri_;
  std::string directory_;
};

/// Puts `count` rows that wait into the table, as stored events are.
void fillTable(const std::string& databasePath, int count, const std::string& url);

}  // namespace kifo::bench
