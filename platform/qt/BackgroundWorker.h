#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace kifo {

/// One thread for work that waits, such as loading a picture; it starts with the first task. Tasks
/// run in order. When too many wait, the oldest is dropped.
///
/// **Threading:** thread-safe.
/// **Ownership:** the end of the worker drops what has not begun and waits for nothing: a task that
/// is running ends by itself, so it must own whatever it touches.
class BackgroundWorker {
 public:
  using Task = std::function<void()>;

  explicit BackgroundWorker(std::size_t capacity);
  ~BackgroundWorker();
  BackgroundWorker(const BackgroundWorker&) = delete;
  BackgroundWorker& operator=(const BackgroundWorker&) = delete;

  /// False when the oldest task had to go for it.
  bool post(Task task);

 private:
  struct Shared {
    std::mutex mutex;
    std::condition_variable changed;
    // Guarded by mutex.
    std::deque<Task> tasks;
    bool started = false;
    bool stopped = false;
  };

  static void run(Shared& shared);

  const std::size_t capacity_;
  const std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

}  // namespace kifo
