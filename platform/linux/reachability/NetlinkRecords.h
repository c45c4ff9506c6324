#pragma once

#include <linux/netlink.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kifo {

/// A network interface, as far as it matters for reachability.
struct NetworkLink {
  unsigned index = 0;
  std::string name;
  unsigned flags = 0;                 ///< IFF_ bits.
  std::uint8_t operationalState = 0;  ///< IF_OPER_ values.
  std::uint16_t hardwareType = 0;     ///< ARPHRD_ values.
  std::string kind;                   ///< The driver's kind such as "wwan"; often empty.
  bool modem = false;                 ///< Whether it is a modem, by its kind.
};

/// One next hop of a route.
struct NetworkHop {
  unsigned link = 0;  ///< The interface's index.
  bool gateway = false;
};

/// A default route, or the route to one address.
struct NetworkRoute {
  int family = 0;                ///< AF_INET or AF_INET6.
  std::uint32_t metric = 0;      ///< Lower ones win.
  bool local = false;            ///< The destination is this machine.
  std::vector<NetworkHop> hops;  ///< The usable ones; at least one.
};

/// An IPv4 or IPv6 address; the family determines how many of the bytes are used.
struct NetworkAddress {
  int family = 0;  ///< AF_INET or AF_INET6.
  std::array<std::uint8_t, 16> bytes = {};
  unsigned scope = 0;  ///< The interface of an address that is only valid on one, or 0.

  [[nodiscard]] std::size_t size() const;
  friend bool operator==(const NetworkAddress&, const NetworkAddress&) = default;
};

/// The interface that an RTM_NEWLINK message describes; none for any other message.
std::optional<NetworkLink> linkIn(const nlmsghdr& message);

/// The route that an RTM_NEWROUTE message describes; none for any other message and for a route
/// without a usable hop (unreachable, prohibit, black hole, only dead hops).
std::optional<NetworkRoute> routeIn(const nlmsghdr& message);

/// The same, if it is a default route of the main table.
std::optional<NetworkRoute> defaultRouteIn(const nlmsghdr& message);

/// The reachability bits of a hop through `link`; 0 when the link passes no packets.
std::uint32_t flagsThrough(const NetworkLink& link, const NetworkHop& hop);

}  // namespace kifo
