#include "platform/linux/threads/LinuxSerialQueue.h"

#include <poll.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <deque>
#include <future>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "platform/linux/threads/Mailbox.h"
#include "platform/linux/threads/Worker.h"

namespace kifo {
namespace {

constexpr std::string_view LOG_TAG = "Kifo SerialQueue:";

using Steady = std::chrono::steady_clock;

constexpr double kLongestDelay =
    10 * 365 * 86400.0;                    // ten years; keeps any delay within the clock's range
constexpr double kShortestPeriod = 0.001;  // a repeating timer may not occupy the thread
const SerialQueue::Duration kDestructionBound(0.1);

Steady::duration clamped(SerialQueue::Duration delay, double shortest = 0.0) {
  const double seconds = std::isnan(delay.count()) ? 0.0 : delay.count();
  return std::chrono::duration_cast<Steady::duration>(
      SerialQueue::Duration(std::clamp(seconds, shortest, kLongestDelay)));
}

timespec timespecOf(Steady::duration duration) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(duration);
  return {seconds.count(), (duration - seconds).count()};
}

void runGuarded(const SerialQueue::Task& task) {
  try {
    if (task) task();
  } catch (const std::exception& error) {
    Console::print(LOG_TAG, std::string("a task threw: ") + error.what());
  } catch (...) {
    Console::print(LOG_TAG, "a task threw");
  }
}

}  // namespace

/// What the queue and its thread share; whichever of them ends last destroys it.
class LinuxSerialQueue::Core : public std::enable_shared_from_this<Core> {
 public:
  explicit Core(std::string name) : name_(std::move(name)) {}

  void post(Task task) { put({std::move(task), 0}); }
  void sync(const Task& task);
  Timer schedule(Duration delay, Task task, bool repeats);
  Watch watch(int descriptor, Task readable);
  void forget(std::uint64_t source);
  [[nodiscard]] bool isCurrent() const { return current == this; }
  bool stop(Duration bound);

 private:
  using SharedTask = std::shared_ptr<const Task>;
  /// A timer or a watched descriptor.
  struct Source {
    SharedTask task;
    Steady::time_point due{};
    Steady::duration period{};  ///< Zero: once.
    int descriptor = -1;        ///< Not negative: a watch.
  };
  using Sources = std::map<std::uint64_t, Source>;
  /// A task that is ready to run: its own, or that of a source, which may be forgotten meanwhile.
  struct Ready {
    Task task;
    std::uint64_t source = 0;
  };

  void put(Ready ready);
  void startThread();
  void run();
  std::size_t nextRound();
  void wait();
  void runNext();
  Task takeNext();
  void takePosted() KIFO_REQUIRES(mutex_);
  void collectDue() KIFO_REQUIRES(mutex_);
  void dropPosted();
  Steady::duration untilFirstTimer() const KIFO_REQUIRES(mutex_);

  static thread_local const Core* current;

  const std::string name_;
  Worker worker_;
  Mailbox<Ready> mailbox_;
  std::atomic<bool> stopping_ = false;

  // The thread's only.
  std::vector<pollfd> polled_;            ///< The mailbox's descriptor, then the watches'.
  std::vector<std::uint64_t> polledIds_;  ///< The watch behind each but the first.

  Mutex mutex_;
  std::deque<Ready> ready_ KIFO_GUARDED_BY(mutex_);
  Sources sources_ KIFO_GUARDED_BY(mutex_);
  /// Those that are not yet ready.
  std::set<std::pair<Steady::time_point, std::uint64_t>> timers_ KIFO_GUARDED_BY(mutex_);
  std::set<std::uint64_t> watches_ KIFO_GUARDED_BY(mutex_);
  std::uint64_t last_ KIFO_GUARDED_BY(mutex_) = 0;
  bool abandoned_ KIFO_GUARDED_BY(mutex_) = false;  ///< Tasks were dropped at the end of a bound.
};

thread_local const LinuxSerialQueue::Core* LinuxSerialQueue::Core::current = nullptr;

// Any thread -------------------------------------------------------------------------------------

void LinuxSerialQueue::Core::put(Ready ready) {
  if (stopping_) return;
  if (!mailbox_.post(std::move(ready))) return dropPosted();
  startThread();
}

void LinuxSerialQueue::Core::startThread() {
  if (worker_.isStarted()) return;
  if (!worker_.start(name_.c_str(), [self = shared_from_this()] { self->run(); })) {
    std::fputs("Kifo SerialQueue: no thread to be had, trying again later\n", stderr);
  }
}

void LinuxSerialQueue::Core::sync(const Task& task) {
  if (isCurrent()) return task();
  // A dropped task destroys its promise, which ends the wait as well.
  auto done = std::make_shared<std::promise<void>>();
  const auto finished = done->get_future();
  post([&task, done = std::move(done)] {
    task();
    done->set_value();
  });
  mailbox_.wake();
  finished.wait();
}

SerialQueue::Timer LinuxSerialQueue::Core::schedule(Duration delay, Task task, bool repeats) {
  Source source{std::make_shared<const Task>(std::move(task))};
  const auto wait = clamped(delay);
  if (repeats) source.period = clamped(delay, kShortestPeriod);
  source.due = Steady::now() + wait;
  MutexLock lock(mutex_);
  if (stopping_) return 0;
  const Timer timer = ++last_;
  const auto due = source.due;
  sources_.emplace(timer, std::move(source));
  const bool isDue = wait == Steady::duration::zero();
  if (!isDue) timers_.emplace(due, timer);
  // The thread looks at its timers before it waits: only a new first one concerns it.
  const bool isFirst = !isDue && timers_.begin()->second == timer;
  lock.unlock();
  if (isDue) put({nullptr, timer});
  if (isFirst) startThread();
  if (isFirst) mailbox_.wake();
  return timer;
}

LinuxSerialQueue::Watch LinuxSerialQueue::Core::watch(int descriptor, Task readable) {
  Source source{std::make_shared<const Task>(std::move(readable))};
  source.descriptor = descriptor;
  MutexLock lock(mutex_);
  if (stopping_) return 0;
  const Watch watch = ++last_;
  sources_.emplace(watch, std::move(source));
  watches_.insert(watch);
  lock.unlock();
  startThread();
  mailbox_.wake();
  return watch;
}

void LinuxSerialQueue::Core::forget(std::uint64_t id) {
  Source dropped;  // destroyed after the lock is released
  MutexLock lock(mutex_);
  const auto found = sources_.find(id);
  if (found == sources_.end()) return;
  dropped = std::move(found->second);
  sources_.erase(found);
  timers_.erase({dropped.due, id});
  const bool isPolled = watches_.erase(id) > 0;
  lock.unlock();
  if (isPolled) mailbox_.wake();  // the poll holds on to the descriptor
}

bool LinuxSerialQueue::Core::stop(Duration bound) {
  // Destroyed after the lock is released.
  Sources dropped;
  std::deque<Ready> late;
  MutexLock lock(mutex_);
  stopping_ = true;
  takePosted();
  collectDue();
  for (const auto& timer : timers_) dropped.insert(sources_.extract(timer.second));
  for (const auto watch : watches_) dropped.insert(sources_.extract(watch));
  timers_.clear();
  watches_.clear();
  if (isCurrent()) return ready_.empty();
  const bool hasTasks = !ready_.empty();
  lock.unlock();
  if (hasTasks) startThread();
  mailbox_.wake();
  const bool ended = worker_.join(bound);
  lock.lock();
  abandoned_ = abandoned_ || !ended || !ready_.empty();
  const bool allRan = !abandoned_;
  late.swap(ready_);
  lock.unlock();
  dropPosted();
  return allRan;
}

/// Drops what was posted and what comes from now on.
void LinuxSerialQueue::Core::dropPosted() {
  mailbox_.close();
  mailbox_.take();
}

void LinuxSerialQueue::Core::takePosted() {
  for (Ready& ready : mailbox_.take()) ready_.push_back(std::move(ready));
}

void LinuxSerialQueue::Core::collectDue() {
  if (timers_.empty()) return;
  const auto now = Steady::now();
  while (!timers_.empty() && timers_.begin()->first <= now) {
    ready_.push_back({nullptr, timers_.begin()->second});
    timers_.erase(timers_.begin());
  }
}

Steady::duration LinuxSerialQueue::Core::untilFirstTimer() const {
  if (timers_.empty()) return Wakeups::kForever;
  return std::max(timers_.begin()->first - Steady::now(), Steady::duration::zero());
}

// The thread -------------------------------------------------------------------------------------

void LinuxSerialQueue::Core::run() {
  current = this;
  while (const std::size_t count = nextRound()) {
    for (std::size_t index = 0; index < count; ++index) runNext();
  }
  dropPosted();
}

/// Waits until tasks are ready and gives their number; 0 once the queue has stopped. A round ends
/// after those, so that descriptors are polled however many tasks keep coming.
std::size_t LinuxSerialQueue::Core::nextRound() {
  for (;;) {
    MutexLock lock(mutex_);
    takePosted();
    collectDue();
    if (ready_.empty() && stopping_) return 0;
    if (!ready_.empty() && watches_.empty()) return ready_.size();
    lock.unlock();
    wait();
    lock.lock();
    takePosted();
    if (!ready_.empty()) return ready_.size();
  }
}

/// Polls the mailbox and the watches; not for long when tasks are ready.
void LinuxSerialQueue::Core::wait() {
  MutexLock lock(mutex_);
  polled_.assign(1, {mailbox_.descriptor(), POLLIN, 0});
  polledIds_.assign(watches_.begin(), watches_.end());
  for (const auto watch : polledIds_) {
    polled_.push_back({sources_.at(watch).descriptor, POLLIN, 0});
  }
  const auto longest = ready_.empty() ? untilFirstTimer() : Steady::duration::zero();
  lock.unlock();
  const auto bound = mailbox_.beginWait(longest);
  const timespec timeout = timespecOf(bound);
  ppoll(polled_.data(), polled_.size(), bound == Wakeups::kForever ? nullptr : &timeout, nullptr);
  mailbox_.endWait(polled_.front().revents != 0);
  lock.lock();
  for (std::size_t index = 0; index < polledIds_.size(); ++index) {
    if (polled_[index + 1].revents != 0) ready_.push_back({nullptr, polledIds_[index]});
  }
}

void LinuxSerialQueue::Core::runNext() {
  runGuarded(takeNext());
}

SerialQueue::Task LinuxSerialQueue::Core::takeNext() {
  const MutexLock lock(mutex_);
  if (ready_.empty()) return nullptr;
  Ready ready = std::move(ready_.front());
  ready_.pop_front();
  if (ready.source == 0) return std::move(ready.task);
  const auto found = sources_.find(ready.source);
  if (found == sources_.end()) return nullptr;
  Source& source = found->second;
  const SharedTask task = source.task;
  if (source.period > Steady::duration::zero() && !stopping_) {
    // In step with the first one, but without making up for what was missed.
    source.due = std::max(source.due + source.period, Steady::now());
    timers_.emplace(source.due, ready.source);
  } else if (source.descriptor < 0) {
    sources_.erase(found);
  }
  return [task] {
    if (*task) (*task)();
  };
}

LinuxSerialQueue::LinuxSerialQueue(std::string name)
    : core_(std::make_shared<Core>(std::move(name))) {}

LinuxSerialQueue::~LinuxSerialQueue() {
  core_->stop(kDestructionBound);
}

void LinuxSerialQueue::post(Task task) {
  core_->post(std::move(task));
}

void LinuxSerialQueue::sync(const Task& task) {
  core_->sync(task);
}

SerialQueue::Timer LinuxSerialQueue::schedule(Duration delay, Task task, bool repeats) {
  return core_->schedule(delay, std::move(task), repeats);
}

void LinuxSerialQueue::cancel(Timer timer) {
  core_->forget(timer);
}

bool LinuxSerialQueue::isCurrent() const {
  return core_->isCurrent();
}

bool LinuxSerialQueue::stop(Duration bound) {
  return core_->stop(bound);
}

LinuxSerialQueue::Watch LinuxSerialQueue::watch(int descriptor, Task readable) {
  return core_->watch(descriptor, std::move(readable));
}

void LinuxSerialQueue::unwatch(Watch watch) {
  core_->forget(watch);
}

}  // namespace kifo
