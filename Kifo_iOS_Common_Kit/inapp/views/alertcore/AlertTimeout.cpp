#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertTimeout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kifo {
namespace {

using std::chrono::milliseconds;

// A timer counts milliseconds in an int: 24 days at most, which nobody waits for.
milliseconds fromSeconds(double seconds) {
  return milliseconds(
      std::llround(std::min(seconds * 1000, double(std::numeric_limits<int>::max()))));
}

int wholeSeconds(milliseconds left) {
  return static_cast<int>(
      std::ceil(static_cast<double>(std::max(left, milliseconds(0)).count()) / 1000));
}

}  // namespace

AlertTimeout::AlertTimeout(QObject* parent) : QObject(parent) {
  timeoutTimer_.setSingleShot(true);
  timeoutTimer_.setTimerType(Qt::PreciseTimer);
  showTimeoutTimer_.setTimerType(Qt::PreciseTimer);
  showTimeoutTimer_.setInterval(1000);
  connect(&timeoutTimer_, &QTimer::timeout, this, [this] {
    stop();
    Q_EMIT ended();
  });
  connect(&showTimeoutTimer_, &QTimer::timeout, this, &AlertTimeout::tick);
}

void AlertTimeout::start(double seconds, bool ticks) {
  stop();
  if (!(seconds > 0)) return;
  set_ = true;
  ticks_ = ticks;
  left_ = fromSeconds(seconds);
  seconds_ = wholeSeconds(left_);
  if (!held_) run();
}

void AlertTimeout::stop() {
  set_ = false;
  timeoutTimer_.stop();
  showTimeoutTimer_.stop();
}

void AlertTimeout::tickToo() {
  if (!set_ || std::exchange(ticks_, true)) return;
  if (held_) return;
  seconds_ = wholeSeconds(timeoutTimer_.remainingTimeAsDuration());
  showTimeoutTimer_.start();
}

void AlertTimeout::run() {
  timeoutTimer_.start(left_);
  if (ticks_) showTimeoutTimer_.start();
}

void AlertTimeout::setHeld(bool held) {
  if (held == held_) return;
  held_ = held;
  if (!set_) return;
  if (!held) return run();
  left_ = std::max(timeoutTimer_.remainingTimeAsDuration(), milliseconds(1));
  timeoutTimer_.stop();
  showTimeoutTimer_.stop();
}

void AlertTimeout::tick() {
  if (!set_) return;
  seconds_ = std::max(0, seconds_ - 1);
  // Ticks that a busy thread missed are caught up with.
  if (timeoutTimer_.isActive()) {
    seconds_ = std::min(seconds_, wholeSeconds(timeoutTimer_.remainingTimeAsDuration()));
  }
  Q_EMIT ticked();
}

std::optional<int> AlertTimeout::secondsLeft() const {
  return set_ ? std::optional(seconds_) : std::nullopt;
}

}  // namespace kifo
