#include "platform/linux/reachability/NetlinkRecords.h"

#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>

#include <algorithm>
#include <fstream>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"

namespace kifo {
namespace {

using Flags = ReachabilityFlags;

constexpr unsigned kUseless = RTNH_F_DEAD | RTNH_F_LINKDOWN | RTNH_F_UNRESOLVED;
constexpr std::string_view kModemKinds[] = {"wwan", "ppp", "rmnet"};
constexpr std::uint16_t kModemHardware[] = {ARPHRD_PPP,   ARPHRD_RAWIP, ARPHRD_SLIP,
                                            ARPHRD_CSLIP, ARPHRD_SLIP6, ARPHRD_CSLIP6};

/// An attribute's value when it is long enough to be one of that type, else `otherwise`.
template <class Number>
Number number(const nlattr& attribute, Number otherwise) {
  if (mnl_attr_get_payload_len(&attribute) < sizeof(Number)) return otherwise;
  Number value;
  std::copy_n(static_cast<const char*>(mnl_attr_get_payload(&attribute)), sizeof value,
              reinterpret_cast<char*>(&value));
  return value;
}

std::string text(const nlattr& attribute) {
  const std::string_view all(static_cast<const char*>(mnl_attr_get_payload(&attribute)),
                             mnl_attr_get_payload_len(&attribute));
  return std::string(all.substr(0, all.find('\0')));
}

/// Calls `each` with every attribute that lies wholly within the `size` bytes.
template <class Each>
void eachAttribute(const void* attributes, std::size_t size, const Each& each) {
  const auto* at = static_cast<const char*>(attributes);
  auto left = static_cast<int>(size);
  while (left > 0 && mnl_attr_ok(reinterpret_cast<const nlattr*>(at), left)) {
    const auto& attribute = *reinterpret_cast<const nlattr*>(at);
    each(attribute);
    at += MNL_ALIGN(attribute.nla_len);
    left -= static_cast<int>(MNL_ALIGN(attribute.nla_len));
  }
}

/// Those of a message, behind its header of the given size.
template <class Each>
void eachAttribute(const nlmsghdr& message, std::size_t header, const Each& each) {
  const std::size_t size = mnl_nlmsg_get_payload_len(&message);
  if (size < MNL_ALIGN(header)) return;
  eachAttribute(mnl_nlmsg_get_payload_offset(&message, header), size - MNL_ALIGN(header), each);
}

std::string kindIn(const nlattr& linkInfo) {
  std::string kind;
  eachAttribute(mnl_attr_get_payload(&linkInfo), mnl_attr_get_payload_len(&linkInfo),
                [&](const nlattr& attribute) {
                  if (mnl_attr_get_type(&attribute) == IFLA_INFO_KIND) kind = text(attribute);
                });
  return kind;
}

/// USB and PCI modems appear as Ethernet or raw IP; only sysfs names them as modems. The index is
/// compared because sysfs may show another network namespace's interface of the same name.
bool isModemInSysfs(const NetworkLink& link) {
  if (link.name.find('/') != std::string::npos) return false;  // no valid interface name
  std::ifstream file("/sys/class/net/" + link.name + "/uevent");
  const std::string index = "IFINDEX=" + std::to_string(link.index);
  bool modem = false;
  bool same = false;
  for (std::string line; std::getline(file, line);) {
    modem = modem || line == "DEVTYPE=wwan";
    same = same || line == index;
  }
  return modem && same;
}

bool isModem(const NetworkLink& link) {
  return std::ranges::find(kModemKinds, link.kind) != std::end(kModemKinds) ||
         std::ranges::find(kModemHardware, link.hardwareType) != std::end(kModemHardware) ||
         isModemInSysfs(link);
}

bool hasGateway(int type) {
  return type == RTA_GATEWAY || type == RTA_VIA;
}

NetworkHop hopIn(const rtnexthop& next) {
  NetworkHop hop{static_cast<unsigned>(next.rtnh_ifindex), false};
  eachAttribute(RTNH_DATA(&next), next.rtnh_len - sizeof next, [&](const nlattr& attribute) {
    hop.gateway = hop.gateway || hasGateway(mnl_attr_get_type(&attribute));
  });
  return hop;
}

std::vector<NetworkHop> hopsIn(const nlattr& multipath) {
  std::vector<NetworkHop> hops;
  auto left = static_cast<std::size_t>(mnl_attr_get_payload_len(&multipath));
  const auto* next = static_cast<const rtnexthop*>(mnl_attr_get_payload(&multipath));
  while (left >= sizeof *next && next->rtnh_len >= sizeof *next && next->rtnh_len <= left) {
    if ((next->rtnh_flags & kUseless) == 0) hops.push_back(hopIn(*next));
    const std::size_t step = std::min<std::size_t>(left, RTNH_ALIGN(next->rtnh_len));
    left -= step;
    next = reinterpret_cast<const rtnexthop*>(reinterpret_cast<const char*>(next) + step);
  }
  return hops;
}

const rtmsg* routeHeader(const nlmsghdr& message) {
  if (message.nlmsg_type != RTM_NEWROUTE) return nullptr;
  if (mnl_nlmsg_get_payload_len(&message) < sizeof(rtmsg)) return nullptr;
  return static_cast<const rtmsg*>(mnl_nlmsg_get_payload(&message));
}

std::uint32_t tableOf(const nlmsghdr& message, const rtmsg& header) {
  std::uint32_t table = header.rtm_table;
  eachAttribute(message, sizeof header, [&](const nlattr& attribute) {
    if (mnl_attr_get_type(&attribute) == RTA_TABLE) table = number(attribute, table);
  });
  return table;
}

}  // namespace

std::size_t NetworkAddress::size() const {
  return family == AF_INET ? 4 : 16;
}

std::optional<NetworkLink> linkIn(const nlmsghdr& message) {
  if (message.nlmsg_type != RTM_NEWLINK) return std::nullopt;
  if (mnl_nlmsg_get_payload_len(&message) < sizeof(ifinfomsg)) return std::nullopt;
  const auto& header = *static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(&message));
  NetworkLink link;
  link.index = static_cast<unsigned>(header.ifi_index);
  link.flags = header.ifi_flags;
  link.hardwareType = header.ifi_type;
  eachAttribute(message, sizeof header, [&](const nlattr& attribute) {
    const auto type = mnl_attr_get_type(&attribute);
    if (type == IFLA_IFNAME) link.name = text(attribute);
    if (type == IFLA_OPERSTATE) link.operationalState = number<std::uint8_t>(attribute, 0);
    if (type == IFLA_LINKINFO) link.kind = kindIn(attribute);
  });
  link.modem = isModem(link);
  return link;
}

std::optional<NetworkRoute> routeIn(const nlmsghdr& message) {
  const rtmsg* header = routeHeader(message);
  if (header == nullptr) return std::nullopt;
  if (header->rtm_type != RTN_UNICAST && header->rtm_type != RTN_LOCAL) return std::nullopt;
  NetworkRoute route;
  route.family = header->rtm_family;
  route.local = header->rtm_type == RTN_LOCAL;
  NetworkHop only;
  eachAttribute(message, sizeof *header, [&](const nlattr& attribute) {
    const auto type = mnl_attr_get_type(&attribute);
    if (type == RTA_PRIORITY) route.metric = number<std::uint32_t>(attribute, 0);
    if (type == RTA_OIF) only.link = number<std::uint32_t>(attribute, 0);
    if (type == RTA_MULTIPATH) route.hops = hopsIn(attribute);
    only.gateway = only.gateway || hasGateway(type);
  });
  if (only.link != 0 && (header->rtm_flags & kUseless) == 0) route.hops.push_back(only);
  return route.hops.empty() ? std::nullopt : std::optional(std::move(route));
}

std::optional<NetworkRoute> defaultRouteIn(const nlmsghdr& message) {
  const rtmsg* header = routeHeader(message);
  if (header == nullptr || header->rtm_dst_len != 0 || header->rtm_src_len != 0)
    return std::nullopt;
  if (header->rtm_flags & RTM_F_CLONED || header->rtm_type != RTN_UNICAST) return std::nullopt;
  if (tableOf(message, *header) != RT_TABLE_MAIN) return std::nullopt;
  return routeIn(message);
}

std::uint32_t flagsThrough(const NetworkLink& link, const NetworkHop& hop) {
  const std::uint32_t passing = Flags::reachable | (hop.gateway ? 0 : Flags::isDirect) |
                                (link.modem ? Flags::isWWAN | Flags::transientConnection : 0);
  if ((link.flags & IFF_UP) == 0 || (link.flags & IFF_LOWER_UP) == 0) return 0;
  if (link.operationalState ==
      IF_OPER_DORMANT) {  // A line that dials on demand. An interface that waits for authentication
                          // (802.1X) is dormant too,
    // but is not point-to-point.
    const bool dials = link.modem || (link.flags & IFF_POINTOPOINT) != 0;
    return dials ? passing | Flags::transientConnection | Flags::connectionRequired |
                       Flags::connectionOnTraffic
                 : 0;
  }
  const bool works =
      link.operationalState == IF_OPER_UP || link.operationalState == IF_OPER_UNKNOWN;
  return works ? passing : 0;
}

}  // namespace kifo
