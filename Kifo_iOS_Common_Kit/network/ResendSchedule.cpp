#include "Kifo_iOS_Common_Kit/network/ResendSchedule.h"

#include <algorithm>
#include <functional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/network/OutgoingRequest.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

using Duration = SerialQueue::Duration;

constexpr Duration kFirstInterval(30.0);
constexpr Duration kLongestInterval(600.0);
constexpr double kJitter = 0.2;

/// Between 1 - kJitter and 1 + kJitter: hosts that lost the same server do not return together.
double jitter(const Platform& platform) {
  constexpr std::size_t steps = 1024;
  const auto step = std::hash<std::string>()(platform.identifiers->uuid()) % steps;
  return 1.0 + kJitter * (2.0 * static_cast<double>(step) / steps - 1.0);
}

}  // namespace

ResendSchedule::ResendSchedule() : interval_(kFirstInterval) {}

void ResendSchedule::drained() {
  rowsMayWait_ = false;
  const MutexLock lock(mutex_);
  interval_ = kFirstInterval;
}

void ResendSchedule::settled(const std::shared_ptr<Runtime>& runtime,
                             const OutgoingRequest& request) {
  const bool isDelivered = request.state == OutgoingRequest::State::delivered;
  if (!isDelivered && request.origin != OutgoingRequest::Origin::query) rowsMayWait_ = true;
  if (!isEnabled_ || !rowsMayWait_ || runtime->isStopping) return;
  if (!isDelivered) return arm(runtime);
  {
    const MutexLock lock(mutex_);
    interval_ = kFirstInterval;
  }
  if (!request.isStored() && passes_ == 0) ServiceClient::make(runtime)->syncLogs();
}

void ResendSchedule::arm(const std::shared_ptr<Runtime>& runtime) {
  // Without a network its return is the next trigger.
  if (runtime->session.networkStatus != KifoNetworkStatus::ONLINE) return;
  const auto platform = Platform::current();
  const MutexLock lock(mutex_);
  if (isArmed_) return;
  isArmed_ = true;
  hasSent_ = false;
  platform->mainQueue->schedule(interval_ * jitter(*platform), [weak = std::weak_ptr(runtime)] {
    if (const auto held = weak.lock()) held->resend->expired(held);
  });
}

void ResendSchedule::expired(const std::shared_ptr<Runtime>& runtime) {
  const bool isDue = passes_ == 0 && !hasSent_;
  {
    const MutexLock lock(mutex_);
    isArmed_ = false;
    if (isDue) interval_ = std::min(interval_ * 2.0, kLongestInterval);
  }
  if (!rowsMayWait_ || runtime->isStopping) return;
  if (isDue) ServiceClient::make(runtime)->syncLogs();
  arm(runtime);
}

}  // namespace kifo
