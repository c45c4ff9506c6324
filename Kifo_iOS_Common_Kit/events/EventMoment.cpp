#include "Kifo_iOS_Common_Kit/events/EventMoment.h"

#include "Kifo_iOS_Common_Kit/events/EventInjections.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

EventMoment EventMoment::now() {
  EventMoment moment;
  EventLocationInjected::inject(moment.location);
  moment.identity = Session::shared().identity();
  moment.timestamp = Platform::current()->clock->millisecondsSince1970();
  moment.notificationPermissionStatus = Session::shared().notificationPermissionStatus;
  EventDeviceInjected::inject(moment.device);
  return moment;
}

}  // namespace kifo
