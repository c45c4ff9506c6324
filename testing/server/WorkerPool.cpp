#include "testing/server/WorkerPool.h"

namespace kifo::testing {

void WorkerPool::enqueue(std::function<void()> task) {
  bool crowded = false;
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    if (tasks_.size() > waiting_) {
      if (threads_.size() < bound_) {
        threads_.emplace_back([this] { work(); });
      } else {
        crowded = true;
      }
    }
  }
  changed_.notify_one();
  if (crowded) crowded_();
}

void WorkerPool::shutdown() {
  {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
  }
  changed_.notify_all();
  for (auto& thread : threads_) thread.join();
}

void WorkerPool::work() {
  std::unique_lock lock(mutex_);
  while (true) {
    ++waiting_;
    changed_.wait(lock, [this] { return stopped_ || !tasks_.empty(); });
    --waiting_;
    if (tasks_.empty()) return;
    const auto task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    task();
    lock.lock();
  }
}

}  // namespace kifo::testing
