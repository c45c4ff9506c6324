#include "Kifo_iOS_Common_Kit/events/BaseEvent.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/events/EventInjections.h"

namespace kifo {

EventParameters compose(BaseEvent event) {
  EventParameters composed = std::move(event.initialParameters);
  BaseInjected::inject(composed, event);
  if (event.reportsStatus) {
    composed[Constants::STATUS] =
        std::string(rawValue(event.snapshot.notificationPermissionStatus));
  }
  insertAll(composed, std::move(event.ownKeys));
  composed[Constants::NAME] = std::move(event.name);
  return composed;
}

}  // namespace kifo
