#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Runs tasks one after another, in the order in which they were posted.
///
/// The SDK owns three: the main queue (every database statement, reachability callbacks, delayed
/// work, choosing a popup), the answer queue (HTTP answers, which may wait for a token) and the
/// reachability queue.
///
/// **Threading:** every operation may be called from any thread, from a task included.
/// **Errors:** an exception that a task lets out is caught, printed and dropped; the next task
/// runs. After `stop`, tasks that are posted are dropped.
class KIFO_EXPORT SerialQueue {
 public:
  using Task = std::function<void()>;
  using Timer = std::uint64_t;                     ///< 0 is never a timer.
  using Duration = std::chrono::duration<double>;  ///< Seconds.

  virtual ~SerialQueue() = default;

  /// Appends `task`. Never blocks on a running task.
  virtual void post(Task task) = 0;

  /// Appends `task` once `delay` has passed, and then again every `delay` when `repeats`.
  /// A delay below zero counts as zero.
  virtual Timer schedule(Duration delay, Task task, bool repeats = false) = 0;

  /// Forgets a timer. A task that has already started finishes; an unknown timer is ignored.
  virtual void cancel(Timer timer) = 0;

  /// Whether the caller is a task of this queue.
  [[nodiscard]] virtual bool isCurrent() const = 0;

  /// Runs the tasks that are already queued (timers not yet due are dropped), then stops for good.
  /// Waits no longer than `bound`; tasks that have not begun by then are dropped, one that is
  /// running is left to end by itself. Returns whether everything queued had run.
  virtual bool stop(Duration bound) = 0;

  /// Runs `task` on the queue and waits for its end; runs it at once when called from a task of
  /// this queue. After `stop` the task is not run.
  virtual void sync(const Task& task) = 0;
};

}  // namespace kifo
