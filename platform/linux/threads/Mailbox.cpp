#include "platform/linux/threads/Mailbox.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

#include "platform/linux/threads/Worker.h"

namespace kifo {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPollPeriod = std::chrono::milliseconds(1);
constexpr auto kPollsFor = std::chrono::milliseconds(10);
constexpr auto kWithoutDescriptor = std::chrono::milliseconds(20);

}  // namespace

Wakeups::Wakeups() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Wakeups::~Wakeups() {
  if (descriptor_ >= 0) close(descriptor_);
}

void Wakeups::itemPosted() {
  const bool isOurs = Worker::isCurrentThread();
  if (!isOurs) hostPosted_ = true;
  State state = state_;
  while (state == State::parked || (state == State::polling && isOurs)) {
    if (state_.compare_exchange_weak(state, State::woken)) return signal();
  }
}

void Wakeups::wake() {
  const State before = state_.exchange(State::woken);
  if (before == State::polling || before == State::parked) signal();
}

Wakeups::Duration Wakeups::beginWait(Duration longest) {
  const bool polls = isPolling();
  if (state_.exchange(polls ? State::polling : State::parked) == State::woken) {
    return Duration::zero();
  }
  if (polls) longest = std::min<Duration>(longest, kPollPeriod);
  if (descriptor_ < 0) longest = std::min<Duration>(longest, kWithoutDescriptor);
  return longest;
}

void Wakeups::endWait(bool signalled) {
  if (signalled) {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto taken = read(descriptor_, &count, sizeof count);
  }
  // Exchanged, not stored: what was done before a `wake` is seen after it.
  state_.exchange(State::busy);
}

bool Wakeups::isPolling() {
  if (hostPosted_.exchange(false)) {
    pollsUntil_ = Clock::now() + kPollsFor;
  } else if (pollsUntil_ && Clock::now() >= *pollsUntil_) {
    pollsUntil_.reset();
  }
  return pollsUntil_.has_value();
}

void Wakeups::signal() const {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = write(descriptor_, &one, sizeof one);
}

}  // namespace kifo
