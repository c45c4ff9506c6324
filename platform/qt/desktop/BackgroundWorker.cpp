#include "platform/qt/desktop/BackgroundWorker.h"

#include <thread>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "platform/qt/DesktopNotificationCentre.h"

namespace kifo {

BackgroundWorker::~BackgroundWorker() {
  std::deque<Task> dropped;  // destroyed after the lock, for tasks own what they need
  const MutexLock lock(shared_->mutex);
  shared_->stopped = true;
  dropped.swap(shared_->tasks);
  shared_->changed.notifyAll();
}

void BackgroundWorker::post(Task task) {
  const MutexLock lock(shared_->mutex);
  shared_->tasks.push_back(std::move(task));
  if (shared_->idle < shared_->tasks.size() && shared_->threads < mostThreads_) {
    ++shared_->threads;
    std::thread([shared = shared_] { run(*shared); }).detach();
  }
  shared_->changed.notifyOne();
}

void BackgroundWorker::run(Shared& shared) {
  MutexLock lock(shared.mutex);
  for (;;) {
    ++shared.idle;
    shared.changed.wait(shared.mutex, [&]() KIFO_REQUIRES(shared.mutex) {
      return shared.stopped || !shared.tasks.empty();
    });
    --shared.idle;
    if (shared.stopped) return;
    Task task = std::move(shared.tasks.front());
    shared.tasks.pop_front();
    lock.unlock();
    callHost(DesktopNotificationCentre::LOG_TAG, task);
    task = nullptr;
    lock.lock();
  }
}

}  // namespace kifo
