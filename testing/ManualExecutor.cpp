#include "testing/ManualExecutor.h"

#include <algorithm>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"

namespace kifo::testing {
namespace {

constexpr double kShortestPeriod = 0.001;  // a repeating timer must let the time move on

}  // namespace

std::size_t ManualExecutor::runUntilIdle() {
  std::size_t count = 0;
  while (runOne()) ++count;
  return count;
}

bool ManualExecutor::runOne() {
  return runFirst(now(), nullptr);
}

std::size_t ManualExecutor::advance(double seconds) {
  const double end = now() + std::max(seconds, 0.0);
  std::size_t count = 0;
  while (runFirst(end, nullptr)) ++count;
  passTime(end - now());
  return count;
}

void ManualExecutor::passTime(double seconds) {
  const std::lock_guard lock(mutex_);
  now_ += std::max(seconds, 0.0);
}

std::size_t ManualExecutor::pending() const {
  const std::lock_guard lock(mutex_);
  return entries_.size();
}

bool ManualExecutor::hasDue() const {
  const std::lock_guard lock(mutex_);
  return !entries_.empty() && entries_.begin()->first.first <= now_;
}

double ManualExecutor::now() const {
  const std::lock_guard lock(mutex_);
  return now_;
}

SerialQueue::Timer ManualExecutor::add(const FakeSerialQueue* queue, double delay,
                                       SerialQueue::Task task, bool repeats) {
  delay = delay > 0.0 ? delay : 0.0;
  const std::lock_guard lock(mutex_);
  const SerialQueue::Timer timer = ++last_;
  const double period = repeats ? std::max(delay, kShortestPeriod) : 0.0;
  entries_.emplace(Order(now_ + delay, timer), Entry{queue, std::move(task), timer, period});
  return timer;
}

void ManualExecutor::cancel(const FakeSerialQueue* queue, SerialQueue::Timer timer) {
  SerialQueue::Task dropped;  // destroyed after the lock is released
  const std::lock_guard lock(mutex_);
  const auto found = std::ranges::find_if(entries_, [&](const auto& each) {
    return each.second.queue == queue && each.second.timer == timer;
  });
  if (found == entries_.end()) return;
  dropped = std::move(found->second.task);
  entries_.erase(found);
}

void ManualExecutor::drop(const FakeSerialQueue* queue) {
  std::vector<SerialQueue::Task> dropped;  // destroyed after the lock is released
  const std::lock_guard lock(mutex_);
  for (auto& [order, entry] : entries_) {
    if (entry.queue == queue) dropped.push_back(std::move(entry.task));
  }
  std::erase_if(entries_, [&](const auto& each) { return each.second.queue == queue; });
}

std::size_t ManualExecutor::pendingOf(const FakeSerialQueue* queue) const {
  const std::lock_guard lock(mutex_);
  return static_cast<std::size_t>(std::ranges::count_if(
      entries_, [&](const auto& each) { return each.second.queue == queue; }));
}

bool ManualExecutor::isCurrent(const FakeSerialQueue* queue) const {
  const std::lock_guard lock(mutex_);
  return current_ == queue && runner_ == std::this_thread::get_id();
}

bool ManualExecutor::runFirst(double limit, const FakeSerialQueue* queue) {
  const std::lock_guard running(running_);
  Entry entry{};
  if (!takeFirst(limit, queue, entry)) return false;
  run(entry);
  return true;
}

bool ManualExecutor::takeFirst(double limit, const FakeSerialQueue* queue, Entry& entry) {
  const std::lock_guard lock(mutex_);
  const auto first = std::ranges::find_if(
      entries_, [&](const auto& each) { return !queue || each.second.queue == queue; });
  if (first == entries_.end() || first->first.first > limit) return false;
  now_ = std::max(now_, first->first.first);
  auto node = entries_.extract(first);
  entry = node.mapped();
  if (entry.period > 0.0) {
    node.key() = Order(node.key().first + entry.period, ++last_);
    entries_.insert(std::move(node));
  }
  return true;
}

void ManualExecutor::run(Entry& entry) {
  const auto swapCurrent = [this](const FakeSerialQueue* queue, std::thread::id runner) {
    const std::lock_guard lock(mutex_);
    runner_ = runner;
    return std::exchange(current_, queue);
  };
  const auto* outer = swapCurrent(entry.queue, std::this_thread::get_id());
  callHost("Kifo SerialQueue:", entry.task);
  entry.task = nullptr;  // what it holds goes while the queue is still the current one
  swapCurrent(outer, outer ? std::this_thread::get_id() : std::thread::id());
}

}  // namespace kifo::testing
