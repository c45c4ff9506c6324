#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo::tool {

/// How much work several queues have together.
///
/// **Threading:** thread-safe.
class Activity {
 public:
  /// Tasks that are queued, running or scheduled once for later.
  [[nodiscard]] std::int64_t outstanding() const { return outstanding_; }
  /// Grows with every task; the same before and after a look at several counts, nothing began.
  [[nodiscard]] std::uint64_t generation() const { return generation_; }

  void began() {
    ++generation_;
    ++outstanding_;
  }
  void ended() { --outstanding_; }

 private:
  std::atomic<std::int64_t> outstanding_ = 0;
  std::atomic<std::uint64_t> generation_ = 0;
};

/// A queue that keeps count of its tasks. A repeating timer does not count: it never ends.
///
/// **Threading:** thread-safe.
class CountingQueue final : public SerialQueue {
 public:
  CountingQueue(std::shared_ptr<SerialQueue> queue, std::shared_ptr<Activity> activity);

  void post(Task task) override;
  Timer schedule(Duration delay, Task task, bool repeats = false) override;
  void cancel(Timer timer) override { queue_->cancel(timer); }
  [[nodiscard]] bool isCurrent() const override { return queue_->isCurrent(); }
  bool stop(Duration bound) override { return queue_->stop(bound); }
  void sync(const Task& task) override { queue_->sync(task); }

 private:
  Task counted(Task task) const;

  const std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<Activity> activity_;
};

}  // namespace kifo::tool
