#include "platform/linux/LinuxSerialQueue.h"

#include <poll.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "platform/linux/Inbox.h"
#include "platform/linux/Rest.h"
#include "platform/linux/Wakeup.h"
#include "platform/linux/Worker.h"

namespace kifo {
namespace {

using Steady = std::chrono::steady_clock;

constexpr double kLongestDelay =
    10 * 365 * 86400.0;                    // ten years; keeps any delay within the clock's range
constexpr double kShortestPeriod = 0.001;  // a repeating timer may not occupy the thread
constexpr auto kLookWithoutWakeup = std::chrono::milliseconds(20);
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
    Console::print(logTag("SerialQueue"), std::string("a task threw: ") + error.what());
  } catch (...) {
    Console::print(logTag("SerialQueue"), "a task threw");
  }
}

}  // namespace

/// What the queue and its thread share; whichever of them goes last takes it along.
class LinuxSerialQueue::Core : public std::enable_shared_from_this<Core> {
 public:
  explicit Core(std::string name) : name_(std::move(name)) {}

  void post(Task task);
  void enqueue(Task task, Wake wake);
  void wake();
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
  /// A task that waits for its turn: its own, or that of a source, which may be forgotten
  /// meanwhile.
  struct Ready {
    Task task;
    std::uint64_t source = 0;
  };

  void run();
  std::size_t nextRound();
  void sleep(std::unique_lock<std::mutex>& lock);
  void runNext();
  Task takeNext();
  void collectDue();
  void takeInbox();
  void leave(Ready ready, Wake wake);
  void rouse(Wake wake);
  void shut();
  std::optional<timespec> timeUntilDue(std::optional<Steady::duration> rest) const;

  static thread_local const Core* current;

  const std::string name_;
  const Wakeup wakeup_;
  Worker worker_;
  // No post waits for a lock.
  Inbox<Ready> inbox_;
  Rest rest_;
  std::atomic<bool> started_ = false;
  std::atomic<bool> stopping_ = false;    ///< Set with the mutex held: the thread does not miss it.
  std::atomic<bool> shut_ = false;        ///< Nobody looks into the inbox any more.
  std::vector<pollfd> polled_;            // the thread's only
  std::vector<std::uint64_t> polledIds_;  // the thread's only: the watch behind each but the first

  std::mutex mutex_;
  // Guarded by mutex_.
  std::deque<Ready> ready_;
  Sources sources_;
  std::set<std::pair<Steady::time_point, std::uint64_t>>
      timers_;  ///< Those that are not yet ready.
  std::set<std::uint64_t> watches_;
  std::uint64_t last_ = 0;
  bool abandoned_ = false;  ///< Tasks were dropped at the end of a bound.
};

thread_local const LinuxSerialQueue::Core* LinuxSerialQueue::Core::current = nullptr;

void LinuxSerialQueue::Core::post(Task task) {
  leave({std::move(task), 0}, Wake::now);
}

void LinuxSerialQueue::Core::enqueue(Task task, Wake wake) {
  if (wake != Wake::now) rest_.noteSender();
  leave({std::move(task), 0}, wake);
}

void LinuxSerialQueue::Core::wake() {
  if (!inbox_.empty()) rouse(Wake::soon);
}

SerialQueue::Timer LinuxSerialQueue::Core::schedule(Duration delay, Task task, bool repeats) {
  Source source{std::make_shared<const Task>(std::move(task))};
  const auto wait = clamped(delay);
  if (repeats) source.period = clamped(delay, kShortestPeriod);
  source.due = Steady::now() + wait;
  std::unique_lock lock(mutex_);
  if (stopping_) return 0;
  const Timer timer = ++last_;
  const auto due = source.due;
  sources_.emplace(timer, std::move(source));
  const bool isDue = wait == Steady::duration::zero();
  if (!isDue) timers_.emplace(due, timer);
  // The thread looks at its timers before it sleeps: only a new first one concerns it.
  const bool isFirst = !isDue && timers_.begin()->second == timer;
  lock.unlock();
  if (isDue) leave({nullptr, timer}, Wake::now);
  if (isFirst) rouse(Wake::now);
  return timer;
}

LinuxSerialQueue::Watch LinuxSerialQueue::Core::watch(int descriptor, Task readable) {
  Source source{std::make_shared<const Task>(std::move(readable))};
  source.descriptor = descriptor;
  std::unique_lock lock(mutex_);
  if (stopping_) return 0;
  const Watch watch = ++last_;
  sources_.emplace(watch, std::move(source));
  watches_.insert(watch);
  lock.unlock();
  rouse(Wake::now);
  return watch;
}

void LinuxSerialQueue::Core::forget(std::uint64_t id) {
  Source dropped;  // destroyed after the lock is let go
  std::unique_lock lock(mutex_);
  const auto found = sources_.find(id);
  if (found == sources_.end()) return;
  dropped = std::move(found->second);
  sources_.erase(found);
  timers_.erase({dropped.due, id});
  const bool isPolled = watches_.erase(id) > 0;
  lock.unlock();
  if (isPolled) rouse(Wake::now);  // the poll holds on to the descriptor
}

bool LinuxSerialQueue::Core::stop(Duration bound) {
  // Destroyed after the lock is let go.
  Sources dropped;
  std::deque<Ready> late;
  std::unique_lock lock(mutex_);
  stopping_ = true;
  takeInbox();
  collectDue();
  for (const auto& timer : timers_) dropped.insert(sources_.extract(timer.second));
  for (const auto watch : watches_) dropped.insert(sources_.extract(watch));
  timers_.clear();
  watches_.clear();
  if (isCurrent()) return ready_.empty();
  const bool hasThread = started_ || !ready_.empty();
  lock.unlock();
  if (hasThread) rouse(Wake::now);
  const bool ended = worker_.join(bound);
  lock.lock();
  abandoned_ = abandoned_ || !ended || !ready_.empty();
  const bool allRan = !abandoned_;
  late.swap(ready_);
  lock.unlock();
  shut();
  return allRan;
}

void LinuxSerialQueue::Core::leave(Ready ready, Wake wake) {
  if (stopping_) return;
  inbox_.put(std::move(ready));
  if (shut_) return shut();  // it came too late
  if (wake != Wake::later) rouse(wake);
}

/// Starts the thread or ends its rest. While it is awake it costs nothing.
void LinuxSerialQueue::Core::rouse(Wake wake) {
  if (!started_) {
    const std::lock_guard lock(mutex_);
    if (!started_) {
      started_ = worker_.start(name_.c_str(), [self = shared_from_this()] { self->run(); });
    }
    if (!started_) {
      std::fputs("Kifo SerialQueue: no thread to be had, trying again later\n", stderr);
    }
  }
  if (rest_.wakes(wake)) wakeup_.signal();
}

/// Drops what comes from now on.
void LinuxSerialQueue::Core::shut() {
  shut_ = true;
  inbox_.take([](Ready&&) {});
}

void LinuxSerialQueue::Core::takeInbox() {
  inbox_.take([this](Ready&& ready) { ready_.push_back(std::move(ready)); });
}

void LinuxSerialQueue::Core::run() {
  current = this;
  while (const std::size_t count = nextRound()) {
    for (std::size_t index = 0; index < count; ++index) runNext();
  }
  shut();
}

/// Sleeps until tasks are ready and gives their number; 0 once the queue has stopped. A round ends
/// after those, so that descriptors are looked at however many tasks keep coming.
std::size_t LinuxSerialQueue::Core::nextRound() {
  std::unique_lock lock(mutex_);
  for (;;) {
    takeInbox();
    collectDue();
    if (ready_.empty() && stopping_) return 0;
    if (ready_.empty() || !watches_.empty()) sleep(lock);
    takeInbox();
    if (!ready_.empty()) return ready_.size();
  }
}

void LinuxSerialQueue::Core::sleep(std::unique_lock<std::mutex>& lock) {
  polled_.assign(1, {wakeup_.descriptor(), POLLIN, 0});
  polledIds_.assign(watches_.begin(), watches_.end());
  for (const auto watch : polledIds_) {
    polled_.push_back({sources_.at(watch).descriptor, POLLIN, 0});
  }
  const auto timeout =
      timeUntilDue(rest_.begin([this] { return !ready_.empty() || !inbox_.empty(); }));
  lock.unlock();
  ppoll(polled_.data(), polled_.size(), timeout ? &*timeout : nullptr, nullptr);
  if (polled_.front().revents != 0) wakeup_.clear();
  lock.lock();
  rest_.end();
  for (std::size_t index = 0; index < polledIds_.size(); ++index) {
    if (polled_[index + 1].revents != 0) ready_.push_back({nullptr, polledIds_[index]});
  }
}

/// None: there is nothing to wait for but the wake-up.
std::optional<timespec> LinuxSerialQueue::Core::timeUntilDue(
    std::optional<Steady::duration> rest) const {
  std::optional<Steady::duration> wait = rest;
  if (!timers_.empty()) {
    const auto due = std::max(timers_.begin()->first - Steady::now(), Steady::duration::zero());
    wait = std::min(wait.value_or(due), due);
  }
  if (wakeup_.descriptor() < 0) {
    wait = std::min<Steady::duration>(wait.value_or(kLookWithoutWakeup), kLookWithoutWakeup);
  }
  return wait ? std::optional(timespecOf(*wait)) : std::nullopt;
}

void LinuxSerialQueue::Core::collectDue() {
  if (timers_.empty()) return;
  const auto now = Steady::now();
  while (!timers_.empty() && timers_.begin()->first <= now) {
    ready_.push_back({nullptr, timers_.begin()->second});
    timers_.erase(timers_.begin());
  }
}

void LinuxSerialQueue::Core::runNext() {
  runGuarded(takeNext());
}

SerialQueue::Task LinuxSerialQueue::Core::takeNext() {
  const std::lock_guard lock(mutex_);
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

void LinuxSerialQueue::enqueue(Task task, Wake wake) {
  core_->enqueue(std::move(task), wake);
}

void LinuxSerialQueue::wake() {
  core_->wake();
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
