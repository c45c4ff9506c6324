#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo {

/// One thread of the SDK: started once, when it is needed, and joined within a bound; detached when
/// it has not ended by then.
///
/// **Threading:** thread-safe. The thread takes no signals of the host's and runs with the system's
/// ordinary policy (SCHED_OTHER), whatever the policy of the thread that started it.
/// **Ownership:** a detached thread may run on: its body must hold whatever it touches.
class Worker {
 public:
  Worker() = default;
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  /// Runs `body` on a thread named `name` (at most 15 characters) unless that has been done before.
  /// False when the system gives no thread; a later call tries again.
  bool start(const char* name, std::function<void()> body);
  [[nodiscard]] bool isStarted() const { return started_; }

  /// Waits for the body to end, no longer than `bound` seconds. False when it has not: the thread
  /// is detached then, as it is at once when it calls this itself.
  bool join(SerialQueue::Duration bound);

  /// Whether the calling thread is one of the SDK's, of any Worker.
  [[nodiscard]] static bool isCurrentThread();

 private:
  struct End {
    void set(bool ended);
    bool wait(SerialQueue::Duration bound);

    Mutex mutex;
    ConditionVariable reached;
    bool isReached KIFO_GUARDED_BY(mutex) = true;
    bool isGivenUp KIFO_GUARDED_BY(mutex) = false;  ///< A wait timed out: no later one waits.
  };

  const std::shared_ptr<End> end_ = std::make_shared<End>();
  std::atomic<bool> started_ = false;

  Mutex mutex_;
  std::thread thread_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
