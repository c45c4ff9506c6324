#include "platform/linux/reachability/RouteReachability.h"

#include <cerrno>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"

namespace kifo {
namespace {

using Flags = ReachabilityFlags;

/// Bits that all targets must have; of the others one target's is enough.
constexpr std::uint32_t kForAll = Flags::reachable | Flags::isLocalAddress | Flags::isDirect;

std::uint32_t combined(std::uint32_t a, std::uint32_t b) {
  if (a == 0 || b == 0) return 0;
  return (a & b & kForAll) | ((a | b) & ~kForAll);
}

}  // namespace

std::unique_ptr<RouteReachability> RouteReachability::open(std::shared_ptr<LinuxSerialQueue> queue,
                                                           const std::vector<std::string>& targets,
                                                           int& error) {
  auto addresses = TargetAddresses::of(targets, queue);
  if (!addresses) {
    error = EINVAL;
    return nullptr;
  }
  auto watch = NetlinkWatch::open(std::move(queue), error);
  auto routes = watch ? KernelRoutes::open(error) : nullptr;
  if (!routes) return nullptr;
  return std::unique_ptr<RouteReachability>(
      new RouteReachability(std::move(routes), std::move(watch), std::move(addresses)));
}

RouteReachability::RouteReachability(std::unique_ptr<KernelRoutes> routes,
                                     std::unique_ptr<NetlinkWatch> watch,
                                     std::shared_ptr<TargetAddresses> targets)
    : watch_(std::move(watch)), targets_(std::move(targets)), routes_(std::move(routes)) {}

int RouteReachability::flags(std::uint32_t& flags) {
  const auto targets = targets_->addresses();
  const MutexLock lock(mutex_);
  flags = ~std::uint32_t{0};
  for (const auto& addresses : targets) {
    std::uint32_t one = 0;
    if (const int error = flagsOfAny(addresses, one)) return error;
    flags = flags == ~std::uint32_t{0} ? one : combined(flags, one);
  }
  return 0;
}

int RouteReachability::flagsOfAny(const std::vector<NetworkAddress>& addresses,
                                  std::uint32_t& flags) {
  if (addresses.empty()) return routes_->flagsOfNetwork(flags);
  for (const auto& address : addresses) {
    const int error = routes_->flagsOf(address, flags);
    if (error != 0 || flags != 0) return error;
  }
  return 0;
}

int RouteReachability::setCallback(Changed changed, Describe) {
  if (!changed) {
    targets_->setCallback({});
    watch_->setCallback({});
    return 0;
  }
  targets_->setCallback(changed);
  watch_->setCallback([changed, weak = std::weak_ptr(targets_)] {
    if (const auto targets = weak.lock()) targets->lookUpAgain();
    changed();
  });
  return 0;
}

int RouteReachability::setDispatchQueue(std::shared_ptr<SerialQueue> queue) {
  targets_->setDispatchQueue(queue);
  const bool starts = queue != nullptr;
  watch_->setDispatchQueue(std::move(queue));
  if (starts) targets_->lookUpAgain();
  return 0;
}

}  // namespace kifo
