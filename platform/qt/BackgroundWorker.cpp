#include "platform/qt/BackgroundWorker.h"

#include <thread>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"

namespace kifo {

BackgroundWorker::BackgroundWorker(std::size_t capacity) : capacity_(capacity) {}

BackgroundWorker::~BackgroundWorker() {
  std::deque<Task> dropped;  // destroyed without the lock: tasks own what they need
  const std::lock_guard lock(shared_->mutex);
  shared_->stopped = true;
  dropped.swap(shared_->tasks);
  shared_->changed.notify_all();
}

bool BackgroundWorker::post(Task task) {
  Task dropped;
  const std::lock_guard lock(shared_->mutex);
  shared_->tasks.push_back(std::move(task));
  if (shared_->tasks.size() > capacity_) {
    dropped = std::move(shared_->tasks.front());
    shared_->tasks.pop_front();
  }
  if (!std::exchange(shared_->started, true)) {
    std::thread([shared = shared_] { run(*shared); }).detach();
  }
  shared_->changed.notify_all();
  return !dropped;
}

void BackgroundWorker::run(Shared& shared) {
  std::unique_lock lock(shared.mutex);
  for (;;) {
    shared.changed.wait(lock, [&] { return shared.stopped || !shared.tasks.empty(); });
    if (shared.stopped) return;
    Task task = std::move(shared.tasks.front());
    shared.tasks.pop_front();
    lock.unlock();
    callHost(logTag("DesktopNotificationCentre"), task);
    task = nullptr;
    lock.lock();
  }
}

}  // namespace kifo
