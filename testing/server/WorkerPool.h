#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include <httplib.h>

namespace kifo::testing {

/// The server's threads: made as connections come, up to a bound. A connection holds its thread
/// while it is kept alive; when all threads are held, `crowded` is called so that an idle one is
/// let go.
///
/// **Threading:** thread-safe, but for `shutdown`, which is called once.
class WorkerPool : public httplib::TaskQueue {
 public:
  WorkerPool(std::size_t bound, std::function<void()> crowded)
      : bound_(bound), crowded_(std::move(crowded)) {}

  void enqueue(std::function<void()> task) override;
  /// Runs what is queued, then ends the threads.
  void shutdown() override;

 private:
  void work();

  const std::size_t bound_;
  const std::function<void()> crowded_;
  std::mutex mutex_;
  std::condition_variable changed_;
  // Guarded by mutex_.
  std::deque<std::function<void()>> tasks_;
  std::vector<std::thread> threads_;
  std::size_t waiting_ = 0;  // Threads without a task.
  bool stopped_ = false;
};

}  // namespace kifo::testing
