#include "Kifo_iOS_Common_Kit/ports/Platform.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"

namespace kifo {
namespace {

/// Never destroyed: threads may still ask for the platform while the process runs its exit
/// handlers. A shared mutex, because every thread reads it all the time.
struct Slot {
  SharedMutex mutex;
  std::shared_ptr<const Platform> platform KIFO_GUARDED_BY(mutex);
};

Slot& slot() {
  static Slot& only = *new Slot;
  return only;
}

template <class Port>
void fill(std::shared_ptr<Port>& port, const std::shared_ptr<Port>& null) {
  if (!port) port = null;
}

Platform filled(Platform platform) {
  const Platform null = nullPlatform();
  fill(platform.mainQueue, null.mainQueue);
  fill(platform.answerQueue, null.answerQueue);
  fill(platform.reachabilityQueue, null.reachabilityQueue);
  fill(platform.http, null.http);
  fill(platform.userDefaults, null.userDefaults);
  fill(platform.reachability, null.reachability);
  fill(platform.device, null.device);
  fill(platform.position, null.position);
  fill(platform.notifications, null.notifications);
  fill(platform.popups, null.popups);
  fill(platform.pasteboard, null.pasteboard);
  fill(platform.console, null.console);
  fill(platform.clock, null.clock);
  fill(platform.identifiers, null.identifiers);
  fill(platform.watch, null.watch);
  return platform;
}

}  // namespace

std::shared_ptr<const Platform> Platform::current() {
  Slot& s = slot();
  {
    const ReaderLock lock(s.mutex);
    if (s.platform) return s.platform;
  }
  const WriterLock lock(s.mutex);
  if (!s.platform) s.platform = std::make_shared<const Platform>(filled(makeDefault()));
  return s.platform;
}

void Platform::install(Platform platform) {
  auto next = std::make_shared<const Platform>(filled(std::move(platform)));
  std::shared_ptr<const Platform> previous;  // destroyed after the lock is released
  Slot& s = slot();
  const WriterLock lock(s.mutex);
  previous = std::exchange(s.platform, std::move(next));
}

void Platform::release() {
  std::shared_ptr<const Platform> previous;
  Slot& s = slot();
  const WriterLock lock(s.mutex);
  previous = std::exchange(s.platform, nullptr);
}

}  // namespace kifo
