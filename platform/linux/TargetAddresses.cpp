#include "platform/linux/TargetAddresses.h"

#include <utility>

#include "platform/linux/NetworkTarget.h"
#include "platform/linux/Worker.h"

namespace kifo {
namespace {

constexpr SerialQueue::Duration kRetry(30.0);

}  // namespace

std::shared_ptr<TargetAddresses> TargetAddresses::of(const std::vector<std::string>& endpoints,
                                                     const std::shared_ptr<SerialQueue>& timers) {
  auto all = std::shared_ptr<TargetAddresses>(new TargetAddresses(timers));
  for (const auto& endpoint : endpoints) {
    std::string host = hostOf(endpoint);
    if (host.empty()) return nullptr;
    if (const auto address = literalAddress(host)) {
      all->targets_.push_back({{}, {*address}});
    } else {
      all->targets_.push_back({std::move(host), {}});
    }
  }
  return all->targets_.empty() ? nullptr : all;
}

TargetAddresses::TargetAddresses(std::weak_ptr<SerialQueue> timers) : timers_(std::move(timers)) {}

TargetAddresses::Lists TargetAddresses::addresses() const {
  const std::lock_guard lock(mutex_);
  Lists lists;
  for (const auto& target : targets_) lists.push_back(target.addresses);
  return lists;
}

void TargetAddresses::setCallback(ReachabilitySource::Changed changed) {
  const std::lock_guard lock(mutex_);
  changed_.swap(changed);  // the earlier one dies after the lock is let go
}

void TargetAddresses::setDispatchQueue(std::shared_ptr<SerialQueue> queue) {
  const std::lock_guard lock(mutex_);
  dispatchQueue_.swap(queue);
}

std::vector<std::string> TargetAddresses::namesLocked() const {
  std::vector<std::string> names;
  for (const auto& target : targets_) {
    if (!target.name.empty()) names.push_back(target.name);
  }
  return names;
}

void TargetAddresses::lookUpAgain() {
  const std::lock_guard lock(mutex_);
  if (!dispatchQueue_) return;
  auto names = namesLocked();
  if (names.empty()) return;
  again_ = running_;
  if (running_) return;
  Worker thread;  // let go of at once: what it finds, it hands over
  running_ = thread.start(
      "kifo-names", [weak = weak_from_this(), names = std::move(names)] { run(weak, names); });
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
    const std::lock_guard lock(mutex_);
    auto list = lists.begin();
    for (auto& target : targets_) {
      if (target.name.empty()) continue;
      complete = complete && !list->empty();
      // A name server that is out of reach says nothing against what it said before.
      if (!list->empty() && target.addresses != *list) {
        target.addresses = *list;
        changed = true;
      }
      ++list;
    }
    running_ = false;
    again = std::exchange(again_, false);
  }
  if (changed) tell();
  if (again) {
    lookUpAgain();
  } else if (!complete) {
    retryLater();
  }
}

void TargetAddresses::tell() {
  const std::lock_guard lock(mutex_);
  if (!dispatchQueue_) return;
  dispatchQueue_->post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    ReachabilitySource::Changed callback;
    {
      const std::lock_guard inner(self->mutex_);
      if (self->dispatchQueue_) callback = self->changed_;
    }
    if (callback) callback();
  });
}

void TargetAddresses::retryLater() {
  const auto timers = timers_.lock();
  if (!timers) return;
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(retryIsDue_, true)) return;
  }
  timers->schedule(kRetry, [weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    {
      const std::lock_guard lock(self->mutex_);
      self->retryIsDue_ = false;
    }
    self->lookUpAgain();
  });
}

}  // namespace kifo
