#include "platform/linux/threads/ExitGuard.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {
namespace {

using Seconds = SerialQueue::Duration;
using Clock = std::chrono::steady_clock;

const Seconds kBound(0.4);         // for all parts; the transport takes 0.2 at most
const Seconds kConsoleShare(0.1);  // of kBound

/// Never destroyed: the handlers need it.
struct Watched {
  Mutex mutex;
  std::vector<ExitGuard::Parts> parts KIFO_GUARDED_BY(mutex);
  pid_t process KIFO_GUARDED_BY(mutex) = 0;
};

Watched& watched() {
  static Watched& only = *new Watched;
  return only;
}

template <class Part, class End>
void end(const std::weak_ptr<Part>& part, End end) {
  if (const auto alive = part.lock()) end(*alive);
}

void endAll(const ExitGuard::Parts& parts) {
  const auto until = Clock::now() + kBound;
  const auto left = [&] { return Seconds(until - Clock::now()); };
  const auto stop = [](SerialQueue& queue) { queue.stop(Seconds::zero()); };
  end(parts.http, [](HttpTransport& http) { http.stop(); });
  end(parts.answerQueue, stop);
  end(parts.reachabilityQueue, stop);
  end(parts.mainQueue, [&](SerialQueue& queue) { queue.stop(left() - kConsoleShare); });
  end(parts.console,
      [&](LinuxConsole& console) { console.finish(std::max(left(), kConsoleShare)); });
}

void atExit() {
  MutexLock lock(watched().mutex);
  const auto parts = std::exchange(watched().parts, {});
  if (watched().process != getpid()) return;
  lock.unlock();
  for (const auto& each : parts) endAll(each);
}

}  // namespace

void ExitGuard::watch(Parts parts) {
  MutexLock lock(watched().mutex);
  std::erase_if(watched().parts, [](const Parts& each) { return each.mainQueue.expired(); });
  watched().parts.push_back(std::move(parts));
  const bool first = std::exchange(watched().process, getpid()) == 0;
  lock.unlock();
  if (first) comeFirst();
}

void ExitGuard::comeFirst() {
  std::atexit(atExit);
}

}  // namespace kifo
