#pragma once

#include <atomic>
#include <memory>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo {

class Runtime;
struct OutgoingRequest;

/// When stored rows are sent again besides the triggers that always hold (the network returned, a
/// re-sent row was answered 200). Off unless the host set `resendsWhenServerReturns`:
///
/// - a fresh request that is answered 200 while rows may wait begins a pass;
/// - while rows may wait, the network is there and nothing is sent, a pass begins after 30 seconds,
///   then at doubling intervals, each longer or shorter by up to a fifth, up to 10 minutes.
///
/// At most one chain runs at a time. A row still goes out from the store once at most.
///
/// **Threading:** thread-safe.
class ResendSchedule {
 public:
  ResendSchedule();

  /// A pass stopped for want of an in-app answer; it goes on when the answer is there. Not part of
  /// the option.
  std::atomic<bool> awaitsAnswer = false;

  void enable(bool isEnabled) { isEnabled_ = isEnabled; }

  void passBegan() { ++passes_; }
  /// A pass took no row, or the row that it took is settled.
  void passEnded() { --passes_; }
  /// A pass found no row that waits.
  void drained();
  /// A fresh request was handed to the transport.
  void requestSent() { hasSent_ = true; }
  /// A request is settled: begins a pass or arms the timer, where that is due.
  void settled(const std::shared_ptr<Runtime>& runtime, const OutgoingRequest& request);

 private:
  void arm(const std::shared_ptr<Runtime>& runtime) KIFO_EXCLUDES(mutex_);
  void expired(const std::shared_ptr<Runtime>& runtime) KIFO_EXCLUDES(mutex_);

  std::atomic<bool> isEnabled_ = false;
  std::atomic<int> passes_ = 0;
  std::atomic<bool> rowsMayWait_ = true;  ///< An earlier run may have left some.
  std::atomic<bool> hasSent_ = false;     ///< Since the timer was armed.

  Mutex mutex_;
  bool isArmed_ KIFO_GUARDED_BY(mutex_) = false;
  SerialQueue::Duration interval_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
