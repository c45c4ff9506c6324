#include "Kifo_iOS_Common_Kit/core/KifoShutDown.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <future>
#include <memory>

#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/core/TokenFetch.h"
#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "Kifo_iOS_Common_Kit/network/RequestLedger.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

namespace kifo {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr double kLongestBound = 86400.0;

/// What is left of the time that the host granted.
class Deadline {
 public:
  explicit Deadline(double bound)
      : end_(Now::now() + std::chrono::duration_cast<Now::duration>(Seconds(bound))) {}

  [[nodiscard]] Seconds left() const { return std::max(Seconds(0.0), Seconds(end_ - Now::now())); }

 private:
  using Now = std::chrono::steady_clock;
  Now::time_point end_;
};

/// Waits until everything that is queued now has run.
bool drain(SerialQueue& queue, const Deadline& deadline) {
  const auto done = std::make_shared<std::promise<void>>();
  auto finished = done->get_future();
  queue.post([done] { done->set_value(); });
  return finished.wait_for(deadline.left()) == std::future_status::ready;
}

/// Answers queue statements, and statements may settle requests that others wait for: round and
/// round until nothing is left.
bool settle(const Platform& platform, const Deadline& deadline) {
  do {
    const bool isIdle = drain(*platform.mainQueue, deadline) &&
                        RequestLedger::shared().waitUntilIdle(deadline.left()) &&
                        drain(*platform.answerQueue, deadline) &&
                        drain(*platform.mainQueue, deadline);
    if (!isIdle) return false;
  } while (RequestLedger::shared().underWay() > 0);
  return true;
}

}  // namespace

bool shutDown(double bound) {
  const double seconds = std::isnan(bound) ? 0.0 : std::clamp(bound, 0.0, kLongestBound);
  const Deadline deadline(seconds);
  // The last tenth is kept for ending the threads.
  const Deadline settling(seconds * 0.9);
  const auto platform = Platform::current();
  ServiceClient::setStopping(true);
  TokenWaits::end();
  NetworkManager::shared().stopMonitoring();
  const bool isSettled = settle(*platform, settling);
  platform->http->stop();
  if (!isSettled) KifoSqliteManager::sharedManager()->stopWaitingForLocks();
  const bool answersDone = platform->answerQueue->stop(deadline.left());
  const bool statementsDone = platform->mainQueue->stop(deadline.left());
  platform->reachabilityQueue->stop(deadline.left());
  RequestLedger::shared().reset();
  InAppTrigger::shared().reset();
  ServiceClient::reset();
  Session::shared().reset();
  Platform::release();
  return isSettled && answersDone && statementsDone;
}

void resumeAfterShutDown() {
  ServiceClient::setStopping(false);
  TokenWaits::allow();
}

}  // namespace kifo
