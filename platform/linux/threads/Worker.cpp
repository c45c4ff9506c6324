#include "platform/linux/threads/Worker.h"

#include <pthread.h>
#include <sched.h>
#include <signal.h>

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

namespace kifo {
namespace {

constexpr double kLongestBound = 86400.0;  // a day; keeps any bound within the clock's range

/// A new thread inherits its maker's mask: all signals are blocked while one is made.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &previous_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }

 private:
  sigset_t previous_{};
};

/// The real-time priority of a host is not inherited. Not SCHED_BATCH: the bench's row of commits
/// at 1,000 events a second was slower with it.
void setOrdinaryPolicy() {
  const sched_param none{};
  pthread_setschedparam(pthread_self(), SCHED_OTHER, &none);
}

thread_local bool isWorker = false;

}  // namespace

bool Worker::isCurrentThread() {
  return isWorker;
}

void Worker::End::set(bool ended) {
  const MutexLock lock(mutex);
  isReached = ended;
  reached.notifyAll();
}

bool Worker::End::wait(SerialQueue::Duration bound) {
  const MutexLock lock(mutex);
  reached.waitFor(mutex, bound, [this]() KIFO_REQUIRES(mutex) { return isReached || isGivenUp; });
  isGivenUp = !isReached;
  return isReached;
}

Worker::~Worker() {
  join(SerialQueue::Duration::zero());
}

bool Worker::start(const char* name, std::function<void()> body) {
  const MutexLock lock(mutex_);
  if (started_) return true;
  const SignalsBlocked blocked;
  end_->set(false);
  try {
    thread_ = std::thread([end = end_, name = std::string(name), body = std::move(body)]() mutable {
      isWorker = true;
      pthread_setname_np(pthread_self(), name.c_str());
      setOrdinaryPolicy();
      body();
      body = nullptr;
      end->set(true);
    });
  } catch (const std::system_error&) {
    end_->set(true);
    return false;
  }
  started_ = true;
  return true;
}

bool Worker::join(SerialQueue::Duration bound) {
  bound = SerialQueue::Duration(std::clamp(bound.count(), 0.0, kLongestBound));
  const bool ended = end_->wait(bound);
  const MutexLock lock(mutex_);
  if (!thread_.joinable()) return ended;
  if (ended && thread_.get_id() != std::this_thread::get_id()) {
    thread_.join();
  } else {
    thread_.detach();
  }
  return ended;
}

}  // namespace kifo
