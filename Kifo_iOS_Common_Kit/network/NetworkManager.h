#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/network/KifoNotification.h"
#include "Kifo_iOS_Common_Kit/network/KifoNotificationCenter.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

class KifoReachability;

/// Tells the SDK whether the network can be reached, now and at every change.
///
/// **Threading:** thread-safe. The callback runs on the platform's main queue, behind the
/// statements that wait there. `read` does not wait for a slow disk: it runs on the queue where the
/// network is read.
/// **Ownership:** held by a `std::shared_ptr`: a notification that comes after its end finds none.
/// **Errors:** dropped. Where the network cannot be watched the callback is never called.
class NetworkManager : public std::enable_shared_from_this<NetworkManager> {
 public:
  static constexpr std::string_view LOG_TAG =
      "Kifo NetworkManager:";  ///< Starts its console lines.

  using NetworkStatusCallback = std::function<void(bool online)>;

  ~NetworkManager();

  /// Has the callback called with the current status, soon, and with every later one. Called again,
  /// it replaces the callback and the watcher: only one of each is ever in force.
  ///
  /// `read`, unless empty, is told of each reading as soon as it is taken: before the callback is
  /// told of the same one, and never of an older one after a newer. It must not wait.
  void startMonitoring(NetworkStatusCallback callback, NetworkStatusCallback read = {});
  /// Stops; a callback that is running on the main queue finishes.
  void stopMonitoring();

  /// The observer of `KifoReachabilityChangedNotification`. An object that is no `KifoReachability`
  /// is a fatal error.
  void reachabilityChanged(const KifoNotification& note);

  /// The last flags that the watcher has seen, without waiting; none before the first reading.
  [[nodiscard]] std::optional<std::uint32_t> flags() const;

 private:
  mutable Mutex mutex_;
  std::shared_ptr<KifoReachability> reachability_ KIFO_GUARDED_BY(mutex_);
  NetworkStatusCallback networkStatusCallback_ KIFO_GUARDED_BY(mutex_);
  NetworkStatusCallback read_ KIFO_GUARDED_BY(mutex_);
  KifoNotificationCenter::Token observer_ KIFO_GUARDED_BY(mutex_) = 0;
};

/// The network as payloads name it: "cellular" as well for flags never read and for an unreachable
/// network. NONE is never the answer.
KifoNetworkCapability networkCapability(std::optional<std::uint32_t> flags);

}  // namespace kifo
