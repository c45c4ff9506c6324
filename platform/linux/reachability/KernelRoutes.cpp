#include "platform/linux/reachability/KernelRoutes.h"

#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <initializer_list>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"

namespace kifo {
namespace {

/// A netlink request in a buffer on the stack; all requests here fit into it.
class Request {
 public:
  Request(std::uint16_t type, std::uint16_t flags) : header_(mnl_nlmsg_put_header(room_.data())) {
    header_->nlmsg_type = type;
    header_->nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
  }

  template <class Extra>
  Extra& extra() {
    return *static_cast<Extra*>(mnl_nlmsg_put_extra_header(header_, sizeof(Extra)));
  }
  nlmsghdr& header() { return *header_; }

 private:
  alignas(nlmsghdr) std::array<char, 256> room_ = {};
  nlmsghdr* header_;
};

/// Repeats a request whose answer was lost or inconsistent. An answer that is inconsistent three
/// times is used as it is: the change behind it sends a notification, and that a new reading.
template <class Ask>
NetlinkSocket::Outcome withRetries(const Ask& ask) {
  NetlinkSocket::Outcome outcome;
  for (int attempt = 0; attempt < 3; ++attempt) {
    outcome = ask();
    if (outcome.error == 0) return outcome;
  }
  if (outcome.error == EINTR) outcome.error = 0;
  return outcome;
}

/// `none` are the error numbers that mean "there is none"; any other refusal is an error.
int errorOf(const NetlinkSocket::Outcome& outcome, std::initializer_list<int> none) {
  if (outcome.error != 0) return outcome.error;
  return std::ranges::find(none, outcome.refusal) != none.end() ? 0 : outcome.refusal;
}

}  // namespace

std::unique_ptr<KernelRoutes> KernelRoutes::open(int& error) {
  auto socket = NetlinkSocket::forRequests(error);
  if (!socket) return nullptr;
  return std::unique_ptr<KernelRoutes>(new KernelRoutes(std::move(socket)));
}

KernelRoutes::KernelRoutes(std::unique_ptr<NetlinkSocket> socket) : socket_(std::move(socket)) {}

int KernelRoutes::flagsOfNetwork(std::uint32_t& flags) {
  flags = 0;
  std::vector<NetworkRoute> routes;
  if (const int error = addDefaultRoutes(AF_INET, routes)) return error;
  if (const int error = addDefaultRoutes(AF_INET6, routes)) return error;
  std::ranges::stable_sort(routes, {}, &NetworkRoute::metric);
  for (const auto& route : routes) {
    for (const auto& hop : route.hops) {
      std::optional<NetworkLink> through;
      if (const int error = link(hop.link, through)) return error;
      // Packets to the loopback do not leave the machine.
      if (!through || (through->flags & IFF_LOOPBACK) != 0) continue;
      flags = flagsThrough(*through, hop);
      if (flags != 0) return 0;
    }
  }
  return 0;
}

int KernelRoutes::flagsOf(const NetworkAddress& address, std::uint32_t& flags) {
  flags = 0;
  std::optional<NetworkRoute> route;
  if (const int error = routeTo(address, route)) return error;
  if (!route) return 0;
  std::optional<NetworkLink> through;
  if (const int error = link(route->hops.front().link, through)) return error;
  if (through) flags = flagsThrough(*through, route->hops.front());
  if (flags != 0 && route->local) flags |= ReachabilityFlags::isLocalAddress;
  return 0;
}

int KernelRoutes::addDefaultRoutes(int family, std::vector<NetworkRoute>& routes) {
  std::vector<NetworkRoute> found;
  const auto outcome = withRetries([&] {
    found.clear();
    Request request(RTM_GETROUTE, NLM_F_DUMP);
    auto& header = request.extra<rtmsg>();
    header.rtm_family = static_cast<unsigned char>(family);
    header.rtm_table = RT_TABLE_MAIN;
    return socket_->ask(request.header(), [&](const nlmsghdr& message) {
      // A kernel without this family returns another family's routes.
      auto route = defaultRouteIn(message);
      if (route && route->family == family) found.push_back(std::move(*route));
    });
  });
  std::ranges::move(found, std::back_inserter(routes));
  return errorOf(outcome, {ENOENT, EAFNOSUPPORT, EOPNOTSUPP});
}

int KernelRoutes::routeTo(const NetworkAddress& address, std::optional<NetworkRoute>& route) {
  const auto outcome = withRetries([&] {
    route.reset();
    Request request(RTM_GETROUTE, 0);
    auto& header = request.extra<rtmsg>();
    header.rtm_family = static_cast<unsigned char>(address.family);
    header.rtm_dst_len = static_cast<unsigned char>(address.size() * 8);
    mnl_attr_put(&request.header(), RTA_DST, address.size(), address.bytes.data());
    if (address.scope != 0) mnl_attr_put_u32(&request.header(), RTA_OIF, address.scope);
    return socket_->ask(request.header(),
                        [&](const nlmsghdr& message) { route = routeIn(message); });
  });
  return errorOf(outcome, {ENETUNREACH, EHOSTUNREACH, ENETDOWN, ENODEV, ESRCH, EAFNOSUPPORT,
                           EOPNOTSUPP, EACCES /* prohibit */, EINVAL /* black hole */});
}

int KernelRoutes::link(unsigned index, std::optional<NetworkLink>& link) {
  const auto outcome = withRetries([&] {
    link.reset();
    Request request(RTM_GETLINK, 0);
    request.extra<ifinfomsg>().ifi_index = static_cast<int>(index);
    return socket_->ask(request.header(), [&](const nlmsghdr& message) { link = linkIn(message); });
  });
  return errorOf(outcome, {ENODEV, ENXIO});
}

}  // namespace kifo
