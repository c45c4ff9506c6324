#include "platform/linux/reachability/NetlinkReachability.h"

#include <algorithm>
#include <utility>

#include "platform/linux/reachability/RouteReachability.h"

namespace kifo {
namespace {

/// The IPv4 address in bytes 4 to 7, behind length, family and port.
std::string dotted(const ReachabilityService::Address& address) {
  std::string text = std::to_string(address[4]);
  for (std::size_t i = 5; i < 8; ++i) text.append(".").append(std::to_string(address[i]));
  return text;
}

}  // namespace

std::unique_ptr<NetlinkReachability> NetlinkReachability::open(
    std::shared_ptr<LinuxSerialQueue> queue, int& error) {
  auto watch = NetlinkWatch::open(std::move(queue), error);
  auto routes = watch ? KernelRoutes::open(error) : nullptr;
  if (!routes) return nullptr;
  return std::unique_ptr<NetlinkReachability>(
      new NetlinkReachability(std::move(routes), std::move(watch)));
}

NetlinkReachability::NetlinkReachability(std::unique_ptr<KernelRoutes> routes,
                                         std::unique_ptr<NetlinkWatch> watch)
    : watch_(std::move(watch)), routes_(std::move(routes)) {}

int NetlinkReachability::flags(std::uint32_t& flags) {
  const MutexLock lock(mutex_);
  return routes_->flagsOfNetwork(flags);
}

int NetlinkReachability::setCallback(Changed changed, Describe) {
  watch_->setCallback(std::move(changed));
  return 0;
}

int NetlinkReachability::setDispatchQueue(std::shared_ptr<SerialQueue> queue) {
  watch_->setDispatchQueue(std::move(queue));
  return 0;
}

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
