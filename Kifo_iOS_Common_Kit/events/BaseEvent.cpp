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
  EventParameters composed = initialParameters();
  BaseInjected::inject(composed, *this);
  addOwnKeys(composed);
  return composed;
}

void BaseEvent::addOwnKeys(EventParameters& parameters) const {
  parameters[Constants::NAME] = name;
}

}  // namespace kifo
