#include "platform/linux/reachability/NetlinkWatch.h"

#include <linux/rtnetlink.h>

#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "platform/linux/reachability/NetlinkSocket.h"

namespace kifo {
namespace {

constexpr unsigned kGroups =
    RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
constexpr SerialQueue::Duration kMergePeriod(0.02);

}  // namespace

/// Shared with tasks that may outlive the watch.
class NetlinkWatch::Changes : public std::enable_shared_from_this<Changes> {
 public:
  Changes(std::unique_ptr<NetlinkSocket> socket, std::weak_ptr<SerialQueue> queue)
      : socket_(std::move(socket)), queue_(std::move(queue)) {}

  [[nodiscard]] int descriptor() const { return socket_->descriptor(); }

  void setCallback(ReachabilitySource::Changed changed) {
    const MutexLock lock(mutex_);
    changed_.swap(changed);  // the earlier one is destroyed after the lock is released
  }

  void setDispatchQueue(std::shared_ptr<SerialQueue> queue) {
    const MutexLock lock(mutex_);
    dispatchQueue_.swap(queue);
  }

  void readSocket() {
    if (!socket_->drain()) return;
    more_ = merging_;
    if (merging_) return;
    mergeFollowing();
    notify();
  }

 private:
  void mergeFollowing() {
    const auto queue = queue_.lock();
    if (!queue) return;
    merging_ = true;
    queue->schedule(kMergePeriod, [weak = weak_from_this()] {
      if (const auto changes = weak.lock()) changes->mergeEnds();
    });
  }

  void mergeEnds() {
    merging_ = false;
    if (std::exchange(more_, false)) mergeFollowing();
    notify();
  }

  void notify() {
    std::shared_ptr<SerialQueue> queue;
    {
      const MutexLock lock(mutex_);
      queue = dispatchQueue_;
    }
    if (!queue) return;
    if (queue->isCurrent()) {
      call();
    } else {
      queue->post([weak = weak_from_this()] {
        if (const auto changes = weak.lock()) changes->call();
      });
    }
  }

  void call() {
    ReachabilitySource::Changed changed;
    {
      const MutexLock lock(mutex_);
      if (dispatchQueue_) changed = changed_;
    }
    if (changed) changed();
  }

  // Constant after construction; the socket is read on the queue only.
  const std::unique_ptr<NetlinkSocket> socket_;
  const std::weak_ptr<SerialQueue> queue_;

  // On the queue only.
  bool merging_ = false;
  bool more_ = false;

  Mutex mutex_;
  ReachabilitySource::Changed changed_ KIFO_GUARDED_BY(mutex_);
  std::shared_ptr<SerialQueue> dispatchQueue_ KIFO_GUARDED_BY(mutex_);
};

std::unique_ptr<NetlinkWatch> NetlinkWatch::open(std::shared_ptr<LinuxSerialQueue> queue,
                                                 int& error) {
  auto socket = NetlinkSocket::forNotifications(kGroups, error);
  if (!socket) return nullptr;
  auto changes = std::make_shared<Changes>(std::move(socket), queue);
  return std::unique_ptr<NetlinkWatch>(new NetlinkWatch(std::move(queue), std::move(changes)));
}

NetlinkWatch::NetlinkWatch(std::shared_ptr<LinuxSerialQueue> queue,
                           std::shared_ptr<Changes> changes)
    : queue_(std::move(queue)), changes_(std::move(changes)) {}

NetlinkWatch::~NetlinkWatch() {
  setCallback({});
  setDispatchQueue(nullptr);
}

void NetlinkWatch::setCallback(ReachabilitySource::Changed changed) {
  changes_->setCallback(std::move(changed));
}

void NetlinkWatch::setDispatchQueue(std::shared_ptr<SerialQueue> queue) {
  const bool listens = queue != nullptr;
  changes_->setDispatchQueue(std::move(queue));
  if (listens && watch_ == 0) {
    watch_ = queue_->watch(changes_->descriptor(), [changes = changes_] { changes->readSocket(); });
  }
  if (!listens && watch_ != 0) queue_->unwatch(std::exchange(watch_, 0));
}

}  // namespace kifo
