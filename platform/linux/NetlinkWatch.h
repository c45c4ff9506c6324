#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"
#include "platform/linux/LinuxSerialQueue.h"

namespace kifo {

/// Calls back when interfaces, addresses or routes of the machine change.
///
/// The first news are told at once, and what follows within 20 ms of them together at the end of
/// that time. That last call comes in any case, for the kernel may still be at work on what it
/// announced, and some routes it drops without a word.
///
/// **Threading:** externally synchronised. It has no thread: the queue that it is given looks after
/// its socket. The callback runs on the dispatch queue with no lock held and may destroy the watch.
class NetlinkWatch {
 public:
  /// Null, with `error` set, where the process may not listen to the kernel.
  static std::unique_ptr<NetlinkWatch> open(std::shared_ptr<LinuxSerialQueue> queue, int& error);
  ~NetlinkWatch();

  /// What to call, nothing when empty. After a removal no call begins but one under way.
  void setCallback(ReachabilitySource::Changed changed);
  /// Where to call; null stops listening.
  void setDispatchQueue(std::shared_ptr<SerialQueue> queue);

 private:
  class News;

  NetlinkWatch(std::shared_ptr<LinuxSerialQueue> queue, std::shared_ptr<News> news);

  const std::shared_ptr<LinuxSerialQueue> queue_;
  const std::shared_ptr<News> news_;
  LinuxSerialQueue::Watch watch_ = 0;
};

}  // namespace kifo
