#include "Kifo_iOS_Common_Kit/events/EventSnapshot.h"

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/events/EventInjections.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

EventSnapshot EventSnapshot::take(const Runtime& runtime) {
  const auto platform = Platform::current();
  EventSnapshot snapshot;
  EventLocationInjected::inject(snapshot.location, runtime.session);
  snapshot.identity = runtime.session.identity();
  snapshot.timestamp = platform->clock->millisecondsSince1970();
  snapshot.timeZone = platform->clock->timeZone();
  snapshot.notificationPermissionStatus = runtime.session.notificationPermissionStatus;
  EventDeviceInjected::inject(snapshot.device, runtime);
  return snapshot;
}

}  // namespace kifo
