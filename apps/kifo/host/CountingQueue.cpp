#include "apps/kifo/host/CountingQueue.h"

#include <utility>

namespace kifo::tool {
namespace {

/// Counts from its making to its end, whether its task ran or was dropped.
class Count {
 public:
  explicit Count(std::shared_ptr<Activity> activity) : activity_(std::move(activity)) {
    activity_->began();
  }
  ~Count() { activity_->ended(); }
  Count(const Count&) = delete;
  Count& operator=(const Count&) = delete;

 private:
  const std::shared_ptr<Activity> activity_;
};

}  // namespace

CountingQueue::CountingQueue(std::shared_ptr<SerialQueue> queue, std::shared_ptr<Activity> activity)
    : queue_(std::move(queue)), activity_(std::move(activity)) {}

void CountingQueue::post(Task task) {
  queue_->post(counted(std::move(task)));
}

SerialQueue::Timer CountingQueue::schedule(Duration delay, Task task, bool repeats) {
  return queue_->schedule(delay, repeats ? std::move(task) : counted(std::move(task)), repeats);
}

SerialQueue::Task CountingQueue::counted(Task task) const {
  return [count = std::make_shared<Count>(activity_), task = std::move(task)]() mutable {
    // The queue may keep the task for a while after it ran.
    const auto untilTheEnd = std::exchange(count, nullptr);
    task();
  };
}

}  // namespace kifo::tool
