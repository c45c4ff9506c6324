#include "platform/linux/NetlinkReachabilityService.h"

#include <algorithm>
#include <utility>

#include "platform/linux/NetlinkReachability.h"
#include "platform/linux/RouteReachability.h"

namespace kifo {
namespace {

/// The four numbers of the address, which stand behind its length, family and port.
std::string dotted(const ReachabilityService::Address& address) {
  std::string text = std::to_string(address[4]);
  for (std::size_t i = 5; i < 8; ++i) text.append(".").append(std::to_string(address[i]));
  return text;
}

}  // namespace

NetlinkReachabilityService::NetlinkReachabilityService(std::shared_ptr<LinuxSerialQueue> queue,
                                                       std::vector<std::string> targets)
    : queue_(std::move(queue)), targets_(std::move(targets)) {}

std::unique_ptr<ReachabilitySource> NetlinkReachabilityService::createWithAddress(
    const Address& address, int& error) {
  const std::string host = dotted(address);
  if (host != "0.0.0.0") return RouteReachability::open(queue_, {host}, error);
  if (!targets_.empty()) return RouteReachability::open(queue_, targets_, error);
  return NetlinkReachability::open(queue_, error);
}

}  // namespace kifo
