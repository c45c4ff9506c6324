#pragma once

#include <atomic>
#include <memory>

#include "Kifo_iOS_Common_Kit/core/runtime/CampaignOutcomes.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Consent.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Counters.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Session.h"
#include "Kifo_iOS_Common_Kit/core/runtime/TokenFetch.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

class InAppTrigger;
class InFlightRequests;
class KifoSqliteManager;
class NetworkManager;
class PopupGate;
class ResendSchedule;

/// Everything that lives between `Kifo::initialize` and `Kifo::shutdown`. The static classes look
/// the present one up; shutdown takes it out whole, and the next call finds a fresh one.
///
/// Work that may come late (an answer, a token, a timer) holds the runtime that it came from. What
/// it changes there after the runtime was taken out reaches nobody: the next session has a runtime
/// of its own.
///
/// **Threading:** thread-safe; each part says for itself what it allows.
/// **Ownership:** shared by the process's slot and by the work under way. The parts live as long as
/// their runtime.
class Runtime {
 public:
  /// The runtime in force, made on first use. Never null.
  static std::shared_ptr<Runtime> current();
  /// The runtime in force; null when there is none.
  static std::shared_ptr<Runtime> existing();
  /// Takes the runtime in force out of the process; null when there is none.
  static std::shared_ptr<Runtime> detach() { return exchange(nullptr); }
  /// The same, and puts `next` in its place.
  static std::shared_ptr<Runtime> exchange(std::shared_ptr<Runtime> next);

  Runtime();
  ~Runtime();
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  Consent consent;
  Session session;
  TokenFetch tokenFetch;
  const std::shared_ptr<Counters> counters = std::make_shared<Counters>();
  const std::unique_ptr<InFlightRequests> inFlight;
  const std::unique_ptr<InAppTrigger> inAppTrigger;
  const std::unique_ptr<ResendSchedule> resend;
  const std::shared_ptr<NetworkManager> network;
  const std::shared_ptr<PopupGate> popupGate;
  CampaignOutcomes campaignOutcomes;

  /// The store of requests, made on first use for the platform that is then in force.
  std::shared_ptr<KifoSqliteManager> store();

  /// True from the beginning of the shutdown on: no stored row is taken up any more.
  std::atomic<bool> isStopping = false;

 private:
  Mutex mutex_;
  std::shared_ptr<KifoSqliteManager> store_ KIFO_GUARDED_BY(mutex_);
};

/// Counts for the runtime in force.
KIFO_SHARED void count(Counter counter);

/// Waits until nothing is queued on the SDK's queues and no request is under way, `bound` seconds
/// at most.
/// Whether that came about. Must not be called from one of the SDK's queues.
bool waitUntilIdle(Runtime& runtime, double bound);

/// Ends the runtime in force within `bound` seconds and detaches it: what is queued reaches the
/// store and the server, what is under way gets its answer if there is time, then the threads end.
/// Whether all of it was done; true when there was nothing to end.
bool shutDownRuntime(double bound);

}  // namespace kifo
