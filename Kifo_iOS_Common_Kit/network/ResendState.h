#pragma once

#include <atomic>
#include <cstdint>

namespace kifo {

/// What the re-sending of stored rows and the counting of refusals keep between requests.
struct ResendState {
  /// 401 answers since the last 200.
  std::atomic<std::int8_t> unauthorizedCount = 0;
  /// A pass stopped for want of an in-app answer; it goes on when the answer is there.
  std::atomic<bool> awaitsAnswer = false;
};

}  // namespace kifo
