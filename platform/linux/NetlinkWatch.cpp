#include "platform/linux/NetlinkWatch.h"

#include <linux/rtnetlink.h>

#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "platform/linux/NetlinkSocket.h"

namespace kifo {
namespace {

constexpr unsigned kGroups =
    RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
constexpr SerialQueue::Duration kSettlingTime(0.02);

}  // namespace

/// The part that a task under way may still hold when the watch is gone.
class NetlinkWatch::News : public std::enable_shared_from_this<News> {
 public:
  News(std::unique_ptr<NetlinkSocket> socket, std::weak_ptr<SerialQueue> queue)
      : socket_(std::move(socket)), queue_(std::move(queue)) {}

  [[nodiscard]] int descriptor() const { return socket_->descriptor(); }

  void setCallback(ReachabilitySource::Changed changed) {
    const MutexLock lock(mutex_);
    changed_.swap(changed);  // the earlier one dies after the lock is let go
  }

  void setDispatchQueue(std::shared_ptr<SerialQueue> queue) {
    const MutexLock lock(mutex_);
    dispatchQueue_.swap(queue);
  }

  void arrive() {
    if (!socket_->drain()) return;
    more_ = settling_;
    if (settling_) return;
    settle();
    tell();
  }

 private:
  void settle() {
    const auto queue = queue_.lock();
    if (!queue) return;
    settling_ = true;
    queue->schedule(kSettlingTime, [weak = weak_from_this()] {
      if (const auto news = weak.lock()) news->settled();
    });
  }

  void settled() {
    settling_ = false;
    if (std::exchange(more_, false)) settle();
    tell();
  }

  void tell() {
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
        if (const auto news = weak.lock()) news->call();
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
  bool settling_ = false;
  bool more_ = false;

  Mutex mutex_;
  ReachabilitySource::Changed changed_ KIFO_GUARDED_BY(mutex_);
  std::shared_ptr<SerialQueue> dispatchQueue_ KIFO_GUARDED_BY(mutex_);
};

std::unique_ptr<NetlinkWatch> NetlinkWatch::open(std::shared_ptr<LinuxSerialQueue> queue,
                                                 int& error) {
  auto socket = NetlinkSocket::forNews(kGroups, error);
  if (!socket) return nullptr;
  auto news = std::make_shared<News>(std::move(socket), queue);
  return std::unique_ptr<NetlinkWatch>(new NetlinkWatch(std::move(queue), std::move(news)));
}

NetlinkWatch::NetlinkWatch(std::shared_ptr<LinuxSerialQueue> queue, std::shared_ptr<News> news)
    : queue_(std::move(queue)), news_(std::move(news)) {}

NetlinkWatch::~NetlinkWatch() {
  setCallback({});
  setDispatchQueue(nullptr);
}

void NetlinkWatch::setCallback(ReachabilitySource::Changed changed) {
  news_->setCallback(std::move(changed));
}

void NetlinkWatch::setDispatchQueue(std::shared_ptr<SerialQueue> queue) {
  const bool listens = queue != nullptr;
  news_->setDispatchQueue(std::move(queue));
  if (listens && watch_ == 0) {
    watch_ = queue_->watch(news_->descriptor(), [news = news_] { news->arrive(); });
  }
  if (!listens && watch_ != 0) queue_->unwatch(std::exchange(watch_, 0));
}

}  // namespace kifo
