#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/reachability/NetlinkRecords.h"
#include "platform/linux/reachability/NetlinkSocket.h"

namespace kifo {

/// Queries the kernel's routes, in the network namespace in which it was opened.
///
/// **Threading:** externally synchronised. A query takes some 10 µs.
/// **Errors:** the system's numbers, 0 for success; a missing route is no error.
class KernelRoutes {
 public:
  /// Null, with `error` set, where the process may not open a netlink socket.
  static std::unique_ptr<KernelRoutes> open(int& error);

  /// The reachability bits of the network as a whole: those of the default route with the lowest
  /// metric through a working interface. 0 when there is none.
  int flagsOfNetwork(std::uint32_t& flags);
  /// The reachability bits of one address, 0 when no route leads there.
  int flagsOf(const NetworkAddress& address, std::uint32_t& flags);

 private:
  explicit KernelRoutes(std::unique_ptr<NetlinkSocket> socket);

  int addDefaultRoutes(int family, std::vector<NetworkRoute>& routes);
  int routeTo(const NetworkAddress& address, std::optional<NetworkRoute>& route);
  int link(unsigned index, std::optional<NetworkLink>& link);

  const std::unique_ptr<NetlinkSocket> socket_;
};

}  // namespace kifo
