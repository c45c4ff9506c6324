#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "testing/server/ReceivedRequest.h"

namespace kifo::testing {

/// Every request that the server received, in the order of arrival:
///
///     server.requests().waitFor(3, 10s);
///     server.requests().on("/sdkListenerEvent").front()->text("name")
///
/// **Threading:** thread-safe. Requests are immutable and may be held for ever.
class RequestLog {
 public:
  using Request = std::shared_ptr<const ReceivedRequest>;
  using Requests = std::vector<Request>;
  using Bound = std::chrono::duration<double>;  ///< Seconds.

  /// Numbers the request and appends it.
  Request add(ReceivedRequest request);
  void clear();

  [[nodiscard]] Requests all() const;
  [[nodiscard]] Requests on(std::string_view path) const;
  [[nodiscard]] std::size_t count() const;

  /// Waits until at least `count` requests are there; false when `bound` passes first.
  bool waitFor(std::size_t count, Bound bound) const;
  /// The same with a condition, which is asked again after each arrival and must not call the log.
  bool waitFor(const std::function<bool(const Requests&)>& condition, Bound bound) const;

 private:
  mutable std::mutex mutex_;
  mutable std::condition_variable arrived_;
  Requests requests_;  // Guarded by mutex_.
};

}  // namespace kifo::testing
