#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo::tool {

/// A queue that counts its timers of at most a second, such as the one before a popup, so that a
/// script can wait for them. Repeating and longer ones do not count.
///
/// **Threading:** thread-safe.
class TimerCountingQueue final : public SerialQueue {
 public:
  explicit TimerCountingQueue(std::shared_ptr<SerialQueue> queue) : queue_(std::move(queue)) {}

  /// Timers that have not run and were not cancelled.
  [[nodiscard]] bool hasTimers() const { return count_.use_count() > 1; }

  void post(Task task) override { queue_->post(std::move(task)); }
  Timer schedule(Duration delay, Task task, bool repeats = false) override {
    constexpr Duration longest(1.0);
    if (repeats || delay > longest) return queue_->schedule(delay, std::move(task), repeats);
    return queue_->schedule(delay, [counted = count_, task = std::move(task)]() mutable {
      // The queue may keep the task for a while after it ran.
      const auto untilTheEnd = std::exchange(counted, nullptr);
      task();
    });
  }
  void cancel(Timer timer) override { queue_->cancel(timer); }
  [[nodiscard]] bool isCurrent() const override { return queue_->isCurrent(); }
  bool stop(Duration bound) override { return queue_->stop(bound); }
  void sync(const Task& task) override { queue_->sync(task); }

 private:
  const std::shared_ptr<SerialQueue> queue_;
  /// Each timer that counts holds it.
  const std::shared_ptr<int> count_ = std::make_shared<int>();
};

}  // namespace kifo::tool
