#include "platform/linux/NetlinkReachability.h"

#include <utility>

namespace kifo {

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
  const std::lock_guard lock(mutex_);
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

}  // namespace kifo
