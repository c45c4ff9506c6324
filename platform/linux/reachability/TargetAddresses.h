#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"
#include "platform/linux/reachability/NetlinkRecords.h"

namespace kifo {

/// The host of an endpoint's URL, or of a bare "host" or "host:port". Brackets of an IPv6 address
/// are taken off. Empty when there is none.
std::string hostOf(std::string_view endpoint);

/// The address that `host` is, if it is one and no name. "fe80::1%eth0" is one as well.
std::optional<NetworkAddress> literalAddress(const std::string& host);

/// The addresses of a name, best first; none when it has none at present. May wait for seconds.
std::vector<NetworkAddress> lookUp(const std::string& host);

/// The addresses of some endpoints. Each look-up of names has a thread of its own, since the
/// system's resolver may block for seconds and cannot be cancelled.
///
/// **Threading:** thread-safe. The callback runs on the dispatch queue.
/// **Ownership:** may be destroyed during a look-up, whose result is then dropped.
class TargetAddresses : public std::enable_shared_from_this<TargetAddresses> {
 public:
  using Lists = std::vector<std::vector<NetworkAddress>>;

  /// `endpoints`: URLs or hosts. Null when there are none or one has no host. `timers` runs the
  /// retry for names without an address.
  static std::shared_ptr<TargetAddresses> of(const std::vector<std::string>& endpoints,
                                             const std::shared_ptr<SerialQueue>& timers);

  /// The addresses of each endpoint, in order; an empty list for a name that has none yet.
  [[nodiscard]] Lists addresses() const;

  /// Called when a look-up found other addresses than before.
  void setCallback(ReachabilitySource::Changed changed);
  /// Where it is called; null stops calls and look-ups.
  void setDispatchQueue(std::shared_ptr<SerialQueue> queue);

  /// Starts a look-up of all names; one at a time.
  void lookUpAgain();

 private:
  struct Target {
    std::string name;  ///< Empty for an address.
    std::vector<NetworkAddress> addresses;
  };

  TargetAddresses(std::vector<Target> targets, std::weak_ptr<SerialQueue> timers);
  static void run(const std::weak_ptr<TargetAddresses>& weak,
                  const std::vector<std::string>& names);
  [[nodiscard]] std::vector<std::string> names() const KIFO_REQUIRES(mutex_);
  void found(const Lists& lists);
  void notify();
  void retryLater();

  const std::weak_ptr<SerialQueue> timers_;

  mutable Mutex mutex_;
  std::vector<Target> targets_ KIFO_GUARDED_BY(mutex_);
  ReachabilitySource::Changed changed_ KIFO_GUARDED_BY(mutex_);
  std::shared_ptr<SerialQueue> dispatchQueue_ KIFO_GUARDED_BY(mutex_);
  bool running_ KIFO_GUARDED_BY(mutex_) = false;
  bool again_ KIFO_GUARDED_BY(mutex_) = false;
  bool retryIsDue_ KIFO_GUARDED_BY(mutex_) = false;
};

}  // namespace kifo
