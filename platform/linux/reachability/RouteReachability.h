#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"
#include "platform/linux/reachability/KernelRoutes.h"
#include "platform/linux/reachability/NetlinkWatch.h"
#include "platform/linux/reachability/TargetAddresses.h"

namespace kifo {

/// The reachability of some endpoints: each must have a route, also over the loopback. For hosts on
/// a closed network or with a server on the same machine, which have no default route. A name is
/// looked up in the background and again whenever the network changes. Until it has an address the
/// state of the network as a whole counts.
///
/// **Threading, Errors:** see the port; reading the flags never waits for a name.
class RouteReachability final : public ReachabilitySource {
 public:
  /// `targets`: URLs or hosts. Null, with `error` set, where the process may not open a netlink
  /// socket or a target has no host.
  static std::unique_ptr<RouteReachability> open(std::shared_ptr<LinuxSerialQueue> queue,
                                                 const std::vector<std::string>& targets,
                                                 int& error);

  int flags(std::uint32_t& flags) override;
  int setCallback(Changed changed, Describe describe) override;
  int setDispatchQueue(std::shared_ptr<SerialQueue> queue) override;

 private:
  RouteReachability(std::unique_ptr<KernelRoutes> routes, std::unique_ptr<NetlinkWatch> watch,
                    std::shared_ptr<TargetAddresses> targets);

  /// The bits of the first of `addresses` that has a route.
  int flagsOfAny(const std::vector<NetworkAddress>& addresses, std::uint32_t& flags)
      KIFO_REQUIRES(mutex_);

  const std::unique_ptr<NetlinkWatch> watch_;
  const std::shared_ptr<TargetAddresses> targets_;
  Mutex mutex_;
  const std::unique_ptr<KernelRoutes> routes_ KIFO_PT_GUARDED_BY(mutex_);
};

}  // namespace kifo
