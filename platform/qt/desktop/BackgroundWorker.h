#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

/// Threads for work that waits, such as loading a picture. A thread starts when a task finds none
/// idle. With one thread tasks run one after another, in order.
///
/// **Threading:** thread-safe.
/// **Ownership:** the end of the worker drops what has not begun and waits for nothing: a task that
/// is running ends by itself, so it must own whatever it touches.
class BackgroundWorker {
 public:
  using Task = std::function<void()>;

  explicit BackgroundWorker(std::size_t mostThreads) : mostThreads_(mostThreads) {}
  ~BackgroundWorker();
  BackgroundWorker(const BackgroundWorker&) = delete;
  BackgroundWorker& operator=(const BackgroundWorker&) = delete;

  void post(Task task);

 private:
  struct Shared {
    Mutex mutex;
    ConditionVariable changed;
    std::deque<Task> tasks KIFO_GUARDED_BY(mutex);
    std::size_t threads KIFO_GUARDED_BY(mutex) = 0;
    std::size_t idle KIFO_GUARDED_BY(mutex) = 0;
    bool stopped KIFO_GUARDED_BY(mutex) = false;
  };

  static void run(Shared& shared);

  const std::size_t mostThreads_;
  const std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

}  // namespace kifo
