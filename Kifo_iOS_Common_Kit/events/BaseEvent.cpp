#include "Kifo_iOS_Common_Kit/events/BaseEvent.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/events/EventInjections.h"

namespace kifo {

BaseEvent::BaseEvent(std::string eventName)
    : scenario(Constants::ALL),
      actorId(Session::withoutCommas(Session::shared().identity()->actorId)),
      name(std::move(eventName)) {}

EventParameters BaseEvent::parameters() {
  EventParameters composed = std::move(initialParameters_);
  BaseInjected::inject(composed, *this);
  insertAll(composed, std::move(ownKeys_));
  composed[Constants::NAME] = std::move(name);
  return composed;
}

}  // namespace kifo
