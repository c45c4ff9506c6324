#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// What the process knows of requests that the table alone cannot tell: which are under way, and
/// which were delivered although their row could not be removed. It is what keeps a stored copy
/// from being sent while the request itself is still waiting for its answer, and after it was
/// answered.
///
/// **Threading:** thread-safe; waiting callbacks run on the thread that settles.
class KIFO_EXPORT RequestLedger {
 public:
  using Callback = std::function<void(bool delivered)>;

  /// The process's ledger. Never destroyed.
  static RequestLedger& shared();

  /// A request goes out. An empty id (a query, which is never stored) only counts as under way.
  void begin(const std::string& requestId);

  /// A request's answer has been dealt with, statements included; whoever waited for it learns
  /// whether it was answered 200.
  void settle(const std::string& requestId, bool delivered);

  /// Runs `callback` when the request settles. False, and nothing is kept, when it is not under
  /// way.
  bool whenSettled(const std::string& requestId, Callback callback);

  /// The request was answered 200, but its row may still be in the table.
  void noteDelivered(const std::string& requestId);
  void forgetDelivered(const std::string& requestId);
  [[nodiscard]] bool isDelivered(const std::string& requestId) const;

  [[nodiscard]] std::size_t underWay() const;
  /// Waits until nothing is under way, no longer than `bound`; whether that came about.
  bool waitUntilIdle(std::chrono::duration<double> bound);

  /// Forgets everything. For shutdown and tests.
  void reset();

 private:
  using InFlight = std::unordered_map<std::string, std::vector<Callback>>;

  mutable std::mutex mutex_;  ///< Senders take it: entries are made and destroyed outside it.
  // Guarded by mutex_.
  std::condition_variable settled_;
  std::size_t underWay_ = 0;
  InFlight inFlight_;

  mutable std::mutex deliveredMutex_;
  std::unordered_set<std::string> delivered_;  // guarded by deliveredMutex_
};

}  // namespace kifo
