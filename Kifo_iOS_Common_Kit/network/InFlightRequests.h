#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>

#include "Kifo_iOS_Common_Kit/network/OutgoingRequest.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

/// The requests whose stored copy may not be taken up: those that are under way, and those that
/// were answered 200 while their row could not be removed.
///
/// **Threading:** thread-safe. Senders take the lock: entries are made and destroyed outside it.
class InFlightRequests {
 public:
  /// A request is handed over. A query only counts.
  void begin(const std::shared_ptr<OutgoingRequest>& request);

  /// The request was answered 200: its stored copy is never taken up again.
  void setAnswered(OutgoingRequest& request);

  /// What the answer leads to has been done, statements included: the request is `delivered` or
  /// `failed`. It is kept only while it is delivered and `hasRow`. Whether a pass waits for it.
  /// Main queue, or before anything was queued for the request.
  bool settle(OutgoingRequest& request);

  /// Whether the request of that id is under way; the pass that asks is then to go on when the
  /// request is settled.
  bool makePassWait(const std::string& id);

  /// Whether the request of that id was answered 200 while its row stayed in the table.
  [[nodiscard]] bool isDelivered(const std::string& id) const;
  /// The delivered request's row is gone.
  void forgetDelivered(const std::string& id);

  /// How many requests are under way.
  [[nodiscard]] std::size_t count() const;
  /// Waits until none is, `bound` at most; whether that came about.
  bool waitUntilIdle(std::chrono::duration<double> bound);

  /// Drops every entry with its callbacks.
  void clear();

 private:
  using Requests = std::unordered_map<std::string, std::shared_ptr<OutgoingRequest>>;

  mutable Mutex mutex_;  ///< Protects `state` and `passWaits` of every request too.
  ConditionVariable settled_;
  std::size_t underWay_ KIFO_GUARDED_BY(mutex_) = 0;
  Requests requests_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
