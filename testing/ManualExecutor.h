#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo::testing {

class FakeSerialQueue;

/// Runs the tasks of any number of `FakeSerialQueue`s when the test says so, on the test's thread
/// and by a clock that only the test moves:
///
///     queue->post(first);
///     queue->schedule(SerialQueue::Duration(0.5), second);
///     executor->runUntilIdle();  // first
///     executor->advance(0.5);    // second
///
/// Tasks of all queues run in the order in which they become due, equal ones in the order of
/// posting.
///
/// **Threading:** thread-safe; one thread runs tasks at a time, others wait for it.
class ManualExecutor {
 public:
  /// Runs what is due until nothing is left; gives the number of tasks run.
  std::size_t runUntilIdle();
  /// Runs one task that is due; false when there is none.
  bool runOne();
  /// Moves the time on, stopping at each timer to run what it made due; gives the tasks run.
  std::size_t advance(double seconds);
  /// Moves the time on and runs nothing: what is due by then runs when it is asked for.
  void passTime(double seconds);
  /// Tasks and timers that wait, of all queues.
  [[nodiscard]] std::size_t pending() const;
  /// Whether `runOne` would run something.
  [[nodiscard]] bool hasDue() const;
  /// Seconds that the time has been moved on.
  [[nodiscard]] double now() const;

 private:
  friend class FakeSerialQueue;

  using Order = std::pair<double, std::uint64_t>;  ///< When it is due, then in which order it came.
  struct Entry {
    const FakeSerialQueue* queue;
    SerialQueue::Task task;
    SerialQueue::Timer timer;
    double period;  ///< 0: once.
  };

  SerialQueue::Timer add(const FakeSerialQueue* queue, double delay, SerialQueue::Task task,
                         bool repeats);
  void cancel(const FakeSerialQueue* queue, SerialQueue::Timer timer);
  void drop(const FakeSerialQueue* queue);
  std::size_t pendingOf(const FakeSerialQueue* queue) const;
  bool isCurrent(const FakeSerialQueue* queue) const;
  /// Runs the first task due by `limit` seconds, of `queue` only unless it is null.
  bool runFirst(double limit, const FakeSerialQueue* queue);
  bool takeFirst(double limit, const FakeSerialQueue* queue, Entry& entry);
  void run(Entry& entry);

  std::recursive_mutex running_;  ///< Held while tasks run, so that they never overlap.

  mutable std::mutex mutex_;
  // Guarded by mutex_.
  std::map<Order, Entry> entries_;
  double now_ = 0.0;
  std::uint64_t last_ = 0;
  const FakeSerialQueue* current_ = nullptr;
  std::thread::id runner_;
};

}  // namespace kifo::testing
