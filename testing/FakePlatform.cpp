#include "testing/FakePlatform.h"

#include "Kifo_iOS_Common_Kit/core/Kifo.h"

namespace kifo::testing {

Platform FakePlatform::platform() const {
  Platform platform;
  platform.mainQueue = mainQueue;
  platform.answerQueue = answerQueue;
  platform.reachabilityQueue = reachabilityQueue;
  platform.http = http;
  platform.userDefaults = userDefaults;
  platform.reachability = reachability;
  platform.device = device;
  platform.position = position;
  platform.notifications = notifications;
  platform.popups = popups;
  platform.pasteboard = pasteboard;
  platform.console = console;
  platform.clock = clock;
  platform.identifiers = identifiers;
  platform.watch = watch;
  platform.inspector = inspector;
  platform.documentsDirectory = directory.path();
  platform.temporaryDirectory = directory.path();
  return platform;
}

std::size_t FakePlatform::advance(double seconds) const {
  clock->advance(seconds);
  return executor->advance(seconds);
}

InstalledFakePlatform::InstalledFakePlatform() {
  Kifo::shutdown(0.0);
  Platform::install(platform());
}

InstalledFakePlatform::~InstalledFakePlatform() {
  // Late work would find the next test's platform: it is dropped here.
  http->stop();
  for (const auto& queue : {mainQueue, answerQueue, reachabilityQueue, transportQueue}) {
    queue->discard();
  }
  Kifo::shutdown(0.0);
  Platform::release();
}

}  // namespace kifo::testing
