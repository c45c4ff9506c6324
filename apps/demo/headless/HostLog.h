#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/ConsoleSink.h"
#include "Kifo_iOS_Common_Kit/ports/Inspector.h"

namespace kifo::demo {

/// The SDK's console lines and decisions, and waits for them: a step begins when the one before has
/// really ended.
///
/// **Threading:** thread-safe.
class HostLog final : public ConsoleSink, public Inspector {
 public:
  using Bound = std::chrono::duration<double>;  ///< Seconds.

  explicit HostLog(bool printsConsole) : printsConsole_(printsConsole) {}

  void write(std::string line) override;
  void decided(const Decision& decision) override;

  /// Waits until `line` has been printed since the last `mark`; false when `bound` passes first.
  bool waitForLine(const std::string& line, Bound bound);
  /// Waits until `count` decisions of `kind` were taken since the last `mark`.
  bool waitForDecisions(const std::string& kind, std::size_t count, Bound bound);
  /// Forgets the lines and counts of decisions so far; what became of requests is kept.
  void mark();

  /// Whether the event of this payload was sent from the store.
  [[nodiscard]] bool wasResent(const std::string& payloadRequestId) const;
  /// The most re-sends that were under way at once.
  [[nodiscard]] int resendsAtOnce() const;

 private:
  bool waitFor(Bound bound, const std::function<bool()>& condition);
  void follow(const Decision& decision);

  const bool printsConsole_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  // Guarded by mutex_.
  std::vector<std::string> lines_;
  std::map<std::string, std::size_t> decisions_;  // Kind → how many.
  std::map<std::string, std::string> requestOf_;  // The payload's id → the request's.
  std::map<std::string, bool> resent_;            // Request → still under way.
  int resending_ = 0;
  int resendsAtOnce_ = 0;
};

}  // namespace kifo::demo
