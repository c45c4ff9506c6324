#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo {

/// One thread of the SDK: started when it is needed, waited for within a bound, and let go when it
/// does not come back by then.
///
/// **Threading:** thread-safe. The host's signals are never delivered to the thread, and the
/// thread's waking up preempts nobody (SCHED_BATCH), whatever the policy of its maker.
/// **Ownership:** a thread that was let go may run on: its body must hold whatever it touches.
class Worker {
 public:
  Worker() = default;
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  /// Runs `body` on a new thread that bears `name` (at most 15 characters). False when the system
  /// gives no thread.
  bool start(const char* name, std::function<void()> body);

  /// Waits for the body to end, no longer than `bound`. False when it has not: the thread is let go
  /// then, as it is at once when it asks itself.
  bool join(SerialQueue::Duration bound);

 private:
  struct End {
    void set(bool ended);
    bool wait(SerialQueue::Duration bound);

    std::mutex mutex;
    std::condition_variable reached;
    // Guarded by mutex.
    bool isReached = true;
    bool isGivenUp = false;  ///< Somebody waited in vain: nobody waits any more.
  };

  const std::shared_ptr<End> end_ = std::make_shared<End>();

  std::mutex mutex_;
  std::thread thread_;  // guarded by mutex_
};

}  // namespace kifo
