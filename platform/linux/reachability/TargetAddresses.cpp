#include "platform/linux/reachability/TargetAddresses.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/linux/threads/Worker.h"

namespace kifo {
namespace {

struct Free {
  void operator()(addrinfo* list) const { freeaddrinfo(list); }
};

NetworkAddress addressIn(const sockaddr& any) {
  NetworkAddress address;
  address.family = any.sa_family;
  if (any.sa_family == AF_INET) {
    sockaddr_in v4;
    std::memcpy(&v4, &any, sizeof v4);
    std::memcpy(address.bytes.data(), &v4.sin_addr, sizeof v4.sin_addr);
  } else {
    sockaddr_in6 v6;
    std::memcpy(&v6, &any, sizeof v6);
    std::memcpy(address.bytes.data(), &v6.sin6_addr, sizeof v6.sin6_addr);
    address.scope = v6.sin6_scope_id;
  }
  return address;
}

std::vector<NetworkAddress> resolve(const std::string& host, int flags) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;  // one answer for each address, not one for each protocol
  hints.ai_flags = flags;
  addrinfo* list = nullptr;
  if (getaddrinfo(host.c_str(), nullptr, &hints, &list) != 0) return {};
  const std::unique_ptr<addrinfo, Free> owner(list);
  std::vector<NetworkAddress> addresses;
  for (const addrinfo* each = list; each != nullptr; each = each->ai_next) {
    if (each->ai_family != AF_INET && each->ai_family != AF_INET6) continue;
    addresses.push_back(addressIn(*each->ai_addr));
  }
  return addresses;
}

constexpr SerialQueue::Duration kRetry(30.0);

}  // namespace

std::string hostOf(std::string_view endpoint) {
  if (const auto scheme = endpoint.find("://"); scheme != std::string_view::npos) {
    endpoint.remove_prefix(scheme + 3);
  }
  endpoint = endpoint.substr(0, endpoint.find_first_of("/?#"));
  if (const auto user = endpoint.rfind('@'); user != std::string_view::npos) {
    endpoint.remove_prefix(user + 1);
  }
  if (endpoint.starts_with('[')) return std::string(endpoint.substr(1, endpoint.find(']') - 1));
  // Several colons without brackets: an IPv6 address by itself.
  if (std::ranges::count(endpoint, ':') > 1) return std::string(endpoint);
  return std::string(endpoint.substr(0, endpoint.find(':')));
}

std::optional<NetworkAddress> literalAddress(const std::string& host) {
  const auto addresses = resolve(host, AI_NUMERICHOST);
  return addresses.empty() ? std::nullopt : std::optional(addresses.front());
}

std::vector<NetworkAddress> lookUp(const std::string& host) {
  return resolve(host, 0);
}

std::shared_ptr<TargetAddresses> TargetAddresses::of(const std::vector<std::string>& endpoints,
                                                     const std::shared_ptr<SerialQueue>& timers) {
  std::vector<Target> targets;
  for (const auto& endpoint : endpoints) {
    std::string host = hostOf(endpoint);
    if (host.empty()) return nullptr;
    if (const auto address = literalAddress(host)) {
      targets.push_back({{}, {*address}});
    } else {
      targets.push_back({std::move(host), {}});
    }
  }
  if (targets.empty()) return nullptr;
  return std::shared_ptr<TargetAddresses>(new TargetAddresses(std::move(targets), timers));
}

TargetAddresses::TargetAddresses(std::vector<Target> targets, std::weak_ptr<SerialQueue> timers)
    : timers_(std::move(timers)), targets_(std::move(targets)) {}

TargetAddresses::Lists TargetAddresses::addresses() const {
  const MutexLock lock(mutex_);
  Lists lists;
  for (const auto& target : targets_) lists.push_back(target.addresses);
  return lists;
}

void TargetAddresses::setCallback(ReachabilitySource::Changed changed) {
  const MutexLock lock(mutex_);
  changed_.swap(changed);  // the earlier one is destroyed after the lock is released
}

void TargetAddresses::setDispatchQueue(std::shared_ptr<SerialQueue> queue) {
  const MutexLock lock(mutex_);
  dispatchQueue_.swap(queue);
}

std::vector<std::string> TargetAddresses::names() const {
  std::vector<std::string> names;
  for (const auto& target : targets_) {
    if (!target.name.empty()) names.push_back(target.name);
  }
  return names;
}

void TargetAddresses::lookUpAgain() {
  const MutexLock lock(mutex_);
  if (!dispatchQueue_) return;
  auto looked = names();
  if (looked.empty()) return;
  again_ = running_;
  if (running_) return;
  Worker thread;  // detached at the end of this block
  running_ = thread.start(
      "kifo-names", [weak = weak_from_this(), names = std::move(looked)] { run(weak, names); });
}

void TargetAddresses::run(const std::weak_ptr<TargetAddresses>& weak,
                          const std::vector<std::string>& names) {
  Lists lists;
  for (const auto& name : names) lists.push_back(lookUp(name));
  if (const auto self = weak.lock()) self->found(lists);
}

void TargetAddresses::found(const Lists& lists) {
  bool changed = false;
  bool complete = true;
  bool again = false;
  {
    const MutexLock lock(mutex_);
    auto list = lists.begin();
    for (auto& target : targets_) {
      if (target.name.empty()) continue;
      complete = complete && !list->empty();
      // No answer from the name server does not invalidate an earlier one.
      if (!list->empty() && target.addresses != *list) {
        target.addresses = *list;
        changed = true;
      }
      ++list;
    }
    running_ = false;
    again = std::exchange(again_, false);
  }
  if (changed) notify();
  if (again) {
    lookUpAgain();
  } else if (!complete) {
    retryLater();
  }
}

void TargetAddresses::notify() {
  const MutexLock lock(mutex_);
  if (!dispatchQueue_) return;
  dispatchQueue_->post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    ReachabilitySource::Changed callback;
    {
      const MutexLock inner(self->mutex_);
      if (self->dispatchQueue_) callback = self->changed_;
    }
    if (callback) callback();
  });
}

void TargetAddresses::retryLater() {
  const auto timers = timers_.lock();
  if (!timers) return;
  {
    const MutexLock lock(mutex_);
    if (std::exchange(retryIsDue_, true)) return;
  }
  timers->schedule(kRetry, [weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    {
      const MutexLock lock(self->mutex_);
      self->retryIsDue_ = false;
    }
    self->lookUpAgain();
  });
}

}  // namespace kifo
