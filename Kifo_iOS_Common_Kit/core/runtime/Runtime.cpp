#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <future>
#include <utility>

#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"
#include "Kifo_iOS_Common_Kit/network/InFlightRequests.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "Kifo_iOS_Common_Kit/network/ResendSchedule.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

namespace kifo {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr double kLongestBound = 86400.0;

/// Never destroyed: a thread of the host may still call while the process runs its exit handlers.
struct Slot {
  SharedMutex mutex;  ///< Every call of the host reads.
  std::shared_ptr<Runtime> runtime KIFO_GUARDED_BY(mutex);
};

Slot& slot() {
  static Slot& only = *new Slot;
  return only;
}

/// What is left of the time that the host granted.
class Deadline {
 public:
  explicit Deadline(Seconds bound)
      : end_(Clock::now() + std::chrono::duration_cast<Clock::duration>(bound)) {}

  [[nodiscard]] Seconds left() const {
    return std::max(Seconds(0.0), Seconds(end_ - Clock::now()));
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point end_;
};

Seconds bounded(double seconds) {
  return Seconds(std::isnan(seconds) ? 0.0 : std::clamp(seconds, 0.0, kLongestBound));
}

/// Waits until everything that is queued now has run.
bool drain(SerialQueue& queue, const Deadline& deadline) {
  const auto done = std::make_shared<std::promise<void>>();
  auto finished = done->get_future();
  queue.post([done] { done->set_value(); });
  return finished.wait_for(deadline.left()) == std::future_status::ready;
}

/// An answer queues statements, and a statement may queue a request: the queues are drained until
/// no request is left.
bool drainAll(Runtime& runtime, const Platform& platform, const Deadline& deadline) {
  do {
    const bool isIdle =
        drain(*platform.mainQueue, deadline) && runtime.inFlight->waitUntilIdle(deadline.left()) &&
        drain(*platform.answerQueue, deadline) && drain(*platform.mainQueue, deadline);
    if (!isIdle) return false;
  } while (runtime.inFlight->count() > 0);
  return true;
}

}  // namespace

std::shared_ptr<Runtime> Runtime::existing() {
  Slot& s = slot();
  const ReaderLock lock(s.mutex);
  return s.runtime;
}

std::shared_ptr<Runtime> Runtime::current() {
  if (auto runtime = existing()) return runtime;
  auto fresh = std::make_shared<Runtime>();
  Slot& s = slot();
  const WriterLock lock(s.mutex);
  if (!s.runtime) s.runtime = std::move(fresh);
  return s.runtime;
}

std::shared_ptr<Runtime> Runtime::exchange(std::shared_ptr<Runtime> next) {
  Slot& s = slot();
  const WriterLock lock(s.mutex);
  return std::exchange(s.runtime, std::move(next));
}

Runtime::Runtime()
    : inFlight(std::make_unique<InFlightRequests>()),
      inAppTrigger(std::make_unique<InAppTrigger>()),
      resend(std::make_unique<ResendSchedule>()),
      network(std::make_shared<NetworkManager>()),
      popupGate(std::make_shared<PopupGate>()) {}

Runtime::~Runtime() = default;

std::shared_ptr<KifoSqliteManager> Runtime::store() {
  const MutexLock lock(mutex_);
  if (!store_) {
    const auto platform = Platform::current();
    store_ = std::make_shared<KifoSqliteManager>(platform->mainQueue, platform->documentsDirectory,
                                                 platform->storeFiles, counters);
  }
  return store_;
}

void count(Counter counter) {
  Runtime::current()->counters->add(counter);
}

bool waitUntilIdle(Runtime& runtime, double bound) {
  return drainAll(runtime, *Platform::current(), Deadline(bounded(bound)));
}

bool shutDownRuntime(double bound) {
  const auto runtime = Runtime::existing();
  if (!runtime) return true;
  const Deadline deadline(bounded(bound));
  const auto platform = Platform::current();
  runtime->isStopping = true;
  runtime->tokenFetch.end();
  runtime->network->stopMonitoring();
  // The last tenth of the time is kept for ending the threads.
  const bool isIdle = drainAll(*runtime, *platform, Deadline(bounded(bound) * 0.9));
  platform->watch->close();
  platform->http->stop();
  runtime->store()->stopWaitingForLocks();
  const bool answersDone = platform->answerQueue->stop(deadline.left());
  runtime->store()->writeCounters();
  const bool statementsDone = platform->mainQueue->stop(deadline.left());
  platform->reachabilityQueue->stop(deadline.left());
  // They hold callbacks, which may hold the runtime.
  runtime->store()->dropWrites();
  runtime->inFlight->clear();
  runtime->inAppTrigger->clear();
  runtime->popupGate->close();
  Runtime::detach();
  Platform::release();
  return isIdle && answersDone && statementsDone;
}

}  // namespace kifo
