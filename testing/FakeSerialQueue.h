#pragma once

#include <atomic>
#include <memory>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "testing/ManualExecutor.h"

namespace kifo::testing {

/// A serial queue whose tasks run when its `ManualExecutor` runs them, several queues on one
/// executor or each on its own. `sync` runs what is due on this queue on the calling thread.
///
/// **Threading:** thread-safe.
class FakeSerialQueue : public SerialQueue {
 public:
  explicit FakeSerialQueue(
      std::shared_ptr<ManualExecutor> executor = std::make_shared<ManualExecutor>());
  ~FakeSerialQueue() override;

  void post(Task task) override;
  Timer schedule(Duration delay, Task task, bool repeats = false) override;
  void cancel(Timer timer) override;
  [[nodiscard]] bool isCurrent() const override;
  /// Runs what is due, drops the rest. `bound` is not needed: nothing here waits.
  bool stop(Duration bound) override;
  void sync(const Task& task) override;

  /// Stops without running anything more.
  void discard();
  /// Runs the first task that is due on this queue; false when there is none.
  bool runOne();
  /// Tasks and timers of this queue that wait.
  [[nodiscard]] std::size_t pending() const { return executor_->pendingOf(this); }
  [[nodiscard]] bool isStopped() const { return stopped_; }
  [[nodiscard]] ManualExecutor& executor() const { return *executor_; }
  /// Short for the executor's, all its queues included.
  std::size_t runUntilIdle() { return executor_->runUntilIdle(); }
  std::size_t advance(double seconds) { return executor_->advance(seconds); }

 private:
  void shut();

  const std::shared_ptr<ManualExecutor> executor_;
  std::atomic<bool> stopped_ = false;
  std::atomic<bool> shut_ = false;  ///< What comes now came too late.
};

}  // namespace kifo::testing
