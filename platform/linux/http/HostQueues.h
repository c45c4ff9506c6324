#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/http/CurlTransfer.h"

namespace kifo {

/// Lets only so many transfers of one host (scheme, name and port) run at once. The others wait
/// here, in order, while their time-out runs.
///
/// What makes libcurl itself queue a transfer (CURLMOPT_MAX_HOST_CONNECTIONS, CURLOPT_PIPEWAIT) is
/// not used: in 7.88 such a transfer is now and then never started.
///
/// **Threading:** the transport's thread only.
class HostQueues {
 public:
  using Clock = CurlTransfer::Clock;
  using Transfer = std::unique_ptr<CurlTransfer>;

  /// The transfer itself when it is to start now; null when it waits.
  Transfer enqueue(Transfer transfer);
  /// A transfer of that host has ended: the next one, which is to start now, or null.
  Transfer next(const std::string& authority);

  /// Removes those that have waited for as long as they may; their ids.
  std::vector<std::uint64_t> takeExpired();
  /// Removes those with an id up to `last`.
  void dropUpTo(std::uint64_t last);
  void clear() { hosts_.clear(); }

  /// When the first of those that wait expires; may be early. `max()` when none waits.
  [[nodiscard]] Clock::time_point firstExpiry() const { return firstExpiry_; }

 private:
  struct Host {
    int active = 0;
    std::deque<Transfer> waiting;
  };

  std::map<std::string, Host> hosts_;
  Clock::time_point firstExpiry_ = Clock::time_point::max();
};

}  // namespace kifo
