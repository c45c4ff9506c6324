#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"
#include "platform/linux/reachability/KernelRoutes.h"
#include "platform/linux/reachability/NetlinkWatch.h"
#include "platform/linux/threads/LinuxSerialQueue.h"

namespace kifo {

/// The reachability of the network as a whole: there is a usable default route, IPv4 or IPv6, over
/// an interface that is up and has a carrier. The flags also say whether that is a modem, dials on
/// demand, or needs no gateway.
///
/// **Threading, Errors:** see the port. No wake-ups while nothing changes.
class NetlinkReachability final : public ReachabilitySource {
 public:
  /// Null, with `error` set, where the process may not open a netlink socket. `queue` watches the
  /// socket, whatever the dispatch queue is.
  static std::unique_ptr<NetlinkReachability> open(std::shared_ptr<LinuxSerialQueue> queue,
                                                   int& error);

  int flags(std::uint32_t& flags) override;
  int setCallback(Changed changed, Describe describe) override;
  int setDispatchQueue(std::shared_ptr<SerialQueue> queue) override;

 private:
  NetlinkReachability(std::unique_ptr<KernelRoutes> routes, std::unique_ptr<NetlinkWatch> watch);

  const std::unique_ptr<NetlinkWatch> watch_;
  Mutex mutex_;
  const std::unique_ptr<KernelRoutes> routes_ KIFO_PT_GUARDED_BY(mutex_);
};

/// Makes the sources of a Linux system: for the zero address the network as a whole, or the targets
/// if there are any; for any other address the route to it.
///
/// **Threading:** thread-safe.
class NetlinkReachabilityService final : public ReachabilityService {
 public:
  /// `queue` watches the sources' sockets.
  explicit NetlinkReachabilityService(std::shared_ptr<LinuxSerialQueue> queue,
                                      std::vector<std::string> targets = {});

  std::unique_ptr<ReachabilitySource> createWithAddress(const Address& address,
                                                        int& error) override;

 private:
  const std::shared_ptr<LinuxSerialQueue> queue_;
  const std::vector<std::string> targets_;
};

}  // namespace kifo
