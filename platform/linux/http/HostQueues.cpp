#include "platform/linux/http/HostQueues.h"

#include <algorithm>
#include <utility>

namespace kifo {
namespace {

constexpr int kTransfersPerHost = 6;  // so the most connections to a host as well

}  // namespace

HostQueues::Transfer HostQueues::enqueue(Transfer transfer) {
  Host& host = hosts_[transfer->authority()];
  if (host.active < kTransfersPerHost) {
    ++host.active;
    return transfer;
  }
  firstExpiry_ = std::min(firstExpiry_, transfer->deadline());
  host.waiting.push_back(std::move(transfer));
  return nullptr;
}

HostQueues::Transfer HostQueues::next(const std::string& authority) {
  const auto found = hosts_.find(authority);
  Host& host = found->second;
  --host.active;
  Transfer transfer;
  if (!host.waiting.empty()) {
    transfer = std::move(host.waiting.front());
    host.waiting.pop_front();
    ++host.active;
  } else if (host.active == 0) {
    hosts_.erase(found);
  }
  return transfer;
}

std::vector<std::uint64_t> HostQueues::takeExpired() {
  std::vector<std::uint64_t> expired;
  const auto now = Clock::now();
  if (firstExpiry_ > now) return expired;
  firstExpiry_ = Clock::time_point::max();
  for (auto& [authority, host] : hosts_) {
    std::erase_if(host.waiting, [&](const Transfer& transfer) {
      const bool late = transfer->deadline() <= now;
      if (late) expired.push_back(transfer->id());
      if (!late) firstExpiry_ = std::min(firstExpiry_, transfer->deadline());
      return late;
    });
  }
  return expired;
}

void HostQueues::dropUpTo(std::uint64_t last) {
  for (auto& [authority, host] : hosts_) {
    std::erase_if(host.waiting, [&](const Transfer& transfer) { return transfer->id() <= last; });
  }
}

}  // namespace kifo
