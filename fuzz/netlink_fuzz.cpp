// What a routing socket receives: whatever the bytes, no message leads outside of them, and what is
// read makes sense.
#include <linux/rtnetlink.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"
#include "platform/linux/reachability/NetlinkRecords.h"
#include "platform/linux/reachability/NetlinkSocket.h"

namespace {

using Flags = kifo::ReachabilityFlags;

void require(bool holds) {
  if (!holds) std::abort();
}

void check(const kifo::NetworkLink& link) {
  for (const bool gateway : {false, true}) {
    const std::uint32_t flags = kifo::flagsThrough(link, {link.index, gateway});
    require(flags == 0 || (flags & Flags::reachable) != 0);
    require(((flags & Flags::isWWAN) == 0) || link.modem);
  }
}

void read(const void* received, std::size_t size) {
  kifo::NetlinkSocket::messagesIn(received, size, [](const nlmsghdr& message) {
    if (const auto link = kifo::linkIn(message)) check(*link);
    const auto route = kifo::routeIn(message);
    require(!route || !route->hops.empty());
    require(route || !kifo::defaultRouteIn(message));
    return true;
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // On the heap and no larger than it is said to be, so that a step beyond the end is noticed.
  const std::vector<std::uint8_t> received(data, data + size);
  read(received.data(), received.size());
  for (const std::uint16_t type : {RTM_NEWLINK, RTM_NEWROUTE}) {
    std::vector<std::uint8_t> message(sizeof(nlmsghdr) + size);
    const nlmsghdr header{static_cast<std::uint32_t>(message.size()), type, 0, 0, 0};
    std::copy_n(reinterpret_cast<const std::uint8_t*>(&header), sizeof header, message.begin());
    std::copy_n(data, size, message.begin() + sizeof header);
    read(message.data(), message.size());
  }
  return 0;
}
