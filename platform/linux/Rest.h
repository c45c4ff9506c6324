#pragma once

#include <chrono>
#include <optional>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Wake.h"

namespace kifo {

/// How a thread rests between its tasks. After a sender's work it only dozes: for 10 ms it looks
/// every millisecond for more, so that of a stream of events the first alone pays for waking it.
/// Then it sleeps until it is woken: a thread without work wakes up not once a second.
///
/// **Threading:** guarded by its owner's mutex.
class Rest {
 public:
  using Clock = std::chrono::steady_clock;

  /// A sender's work was handed over.
  void noteSender() { senderCame_ = true; }

  /// The thread lies down, unless there is work for it. Gives how long at most; none: until woken.
  std::optional<Clock::duration> begin(bool hasWork) {
    if (std::exchange(senderCame_, false)) dozesUntil_ = Clock::now() + kDoze;
    if (hasWork) return Clock::duration::zero();
    const bool dozes = dozesUntil_ > Clock::time_point::min() && Clock::now() < dozesUntil_;
    state_ = dozes ? State::dozing : State::asleep;
    if (dozes) return kLook;
    dozesUntil_ = Clock::time_point::min();
    return std::nullopt;
  }
  void end() { state_ = State::awake; }

  /// Whether the thread has to be woken now; it counts as awake from then on.
  [[nodiscard]] bool wakes(Wake wake) {
    const bool needed = wake == Wake::now ? state_ != State::awake : state_ == State::asleep;
    if (needed) state_ = State::awake;
    return needed;
  }

 private:
  enum class State { awake, dozing, asleep };

  static constexpr auto kDoze = std::chrono::milliseconds(10);
  static constexpr auto kLook = std::chrono::milliseconds(1);

  State state_ = State::awake;
  bool senderCame_ = false;
  Clock::time_point dozesUntil_ = Clock::time_point::min();
};

}  // namespace kifo
