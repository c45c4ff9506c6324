#include "testing/FakeSerialQueue.h"

#include <atomic>
#include <utility>

namespace kifo::testing {

FakeSerialQueue::FakeSerialQueue(std::shared_ptr<ManualExecutor> executor)
    : executor_(std::move(executor)) {}

FakeSerialQueue::~FakeSerialQueue() {
  executor_->drop(this);
}

void FakeSerialQueue::post(Task task) {
  if (stopped_) return;
  executor_->add(this, 0.0, std::move(task), false);
  if (shut_) shut();
}

SerialQueue::Timer FakeSerialQueue::schedule(Duration delay, Task task, bool repeats) {
  return stopped_ ? 0 : executor_->add(this, delay.count(), std::move(task), repeats);
}

void FakeSerialQueue::cancel(Timer timer) {
  executor_->cancel(this, timer);
}

bool FakeSerialQueue::isCurrent() const {
  return executor_->isCurrent(this);
}

bool FakeSerialQueue::stop(Duration) {
  stopped_ = true;
  const double now = executor_->now();
  while (executor_->runFirst(now, this)) {
  }
  shut();
  return true;
}

bool FakeSerialQueue::runOne() {
  return executor_->runFirst(executor_->now(), this);
}

void FakeSerialQueue::discard() {
  stopped_ = true;
  shut();
}

void FakeSerialQueue::shut() {
  shut_ = true;
  executor_->drop(this);
}

void FakeSerialQueue::sync(const Task& task) {
  if (isCurrent()) {
    task();
    return;
  }
  // Another thread may be running the executor's tasks at this moment, and this one with them.
  std::atomic<bool> done = false;
  post([&] {
    task();
    done = true;
  });
  // Nobody but the test runs tasks here, and the test is what waits: so it runs them.
  const double now = executor_->now();
  while (!done && executor_->runFirst(now, this)) {
  }
}

}  // namespace kifo::testing
