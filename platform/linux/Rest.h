#pragma once

#include <atomic>
#include <chrono>
#include <optional>

#include "Kifo_iOS_Common_Kit/ports/Wake.h"

namespace kifo {

/// How a thread rests between its tasks. After a sender's work it only dozes: for 10 ms it looks
/// every millisecond for more, so that of a stream of events the first alone pays for waking it.
/// Then it sleeps until it is woken: a thread without work wakes up not once a second.
///
/// **Threading:** `begin` and `end` are the thread's own; the others are thread-safe. Whoever
/// brings work makes it visible first and asks `wakes` then; the thread asks for work once it
/// counts as at rest: so one of them always sees the other.
class Rest {
 public:
  using Clock = std::chrono::steady_clock;

  /// A sender's work was handed over.
  void noteSender() { senderCame_ = true; }

  /// The thread lies down, unless `hasWork` finds some. Gives how long at most; none: until woken.
  template <class HasWork>
  std::optional<Clock::duration> begin(const HasWork& hasWork) {
    const bool dozes = isDrowsy();
    state_ = dozes ? State::dozing : State::asleep;
    if (hasWork()) {
      end();
      return Clock::duration::zero();
    }
    return dozes ? std::optional<Clock::duration>(kLook) : std::nullopt;
  }
  void end() { state_ = State::awake; }

  /// Whether the thread has to be woken now; it counts as awake from then on.
  [[nodiscard]] bool wakes(Wake wake) {
    State state = state_;
    while (wake == Wake::now ? state != State::awake : state == State::asleep) {
      if (state_.compare_exchange_weak(state, State::awake)) return true;
    }
    return false;
  }

 private:
  enum class State { awake, dozing, asleep };

  static constexpr auto kDoze = std::chrono::milliseconds(10);
  static constexpr auto kLook = std::chrono::milliseconds(1);

  bool isDrowsy() {
    if (senderCame_.exchange(false)) dozesUntil_ = Clock::now() + kDoze;
    if (dozesUntil_ && Clock::now() >= *dozesUntil_) dozesUntil_.reset();
    return dozesUntil_.has_value();
  }

  std::atomic<State> state_ = State::awake;
  std::atomic<bool> senderCame_ = false;
  std::optional<Clock::time_point> dozesUntil_;  // the thread's only
};

}  // namespace kifo
