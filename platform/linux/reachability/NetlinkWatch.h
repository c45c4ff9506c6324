#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"
#include "platform/linux/threads/LinuxSerialQueue.h"

namespace kifo {

/// Calls back when interfaces, addresses or routes of the machine change.
/// The first change calls back at once; changes within the next 20 ms are merged into one call at
/// the end of that time. That second call always comes: the kernel may still be applying the
/// change, and removes some routes without a notification.
///
/// **Threading:** externally synchronised. It has no thread: `queue` watches its socket. The
/// callback runs on the dispatch queue with no lock held and may destroy the watch.
class NetlinkWatch {
 public:
  /// Null, with `error` set, where the process may not open a netlink socket.
  static std::unique_ptr<NetlinkWatch> open(std::shared_ptr<LinuxSerialQueue> queue, int& error);
  ~NetlinkWatch();

  /// What to call, nothing when empty. After a removal only a call that has begun still runs.
  void setCallback(ReachabilitySource::Changed changed);
  /// Where to call; null stops watching.
  void setDispatchQueue(std::shared_ptr<SerialQueue> queue);

 private:
  class Changes;

  NetlinkWatch(std::shared_ptr<LinuxSerialQueue> queue, std::shared_ptr<Changes> changes);

  const std::shared_ptr<LinuxSerialQueue> queue_;
  const std::shared_ptr<Changes> changes_;
  LinuxSerialQueue::Watch watch_ = 0;
};

}  // namespace kifo
