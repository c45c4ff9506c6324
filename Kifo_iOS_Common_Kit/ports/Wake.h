#pragma once

namespace kifo {

/// When a thread that may be asleep sees to new work. Waking a thread is what handing work over
/// costs most: a few microseconds, tens of them where the system has to start a processor for it.
enum class Wake {
  now,   ///< It is woken.
  soon,  ///< Within milliseconds; it is woken unless it looks by itself, as it does after a
         ///< sender's work.
  later  ///< It is not woken; whoever hands over wakes another thread, which calls `wake`.
};

}  // namespace kifo
