#pragma once

#include <concepts>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/events/EventSnapshot.h"

namespace kifo {

/// One event before it is composed: what its kind says, and the snapshot of its moment. The
/// functions of `EventKinds.h` make one for each kind.
///
/// **Threading:** a value. Made and given its snapshot on the thread that sends; composed on any.
struct BaseEvent {
  explicit BaseEvent(std::string name_) : name(std::move(name_)) {}
  explicit BaseEvent(KifoEventType type) : name(rawValue(type)) {}

  std::string name;
  std::string scenario = Constants::ALL;
  std::optional<std::string> actorId;  ///< None: the actor of the snapshot.
  EventParameters initialParameters;   ///< What the composition starts from: a host's parameters.
  EventParameters ownKeys;             ///< What the kind adds last.
  EventSnapshot snapshot;              ///< Taken when the event is sent.
  /// Adds "status", the permission for notifications, to the own keys.
  bool reportsStatus = false;
};

/// The event's flat dictionary: what it starts from, then location, common keys, device keys, its
/// own keys and "name". A key that is already there gets the later value.
EventParameters compose(BaseEvent event);

/// A record that can be turned into its dictionary.
template <class Record>
concept Parsable = requires(Record record) {
  { compose(record) } -> std::convertible_to<EventParameters>;
};

static_assert(Parsable<BaseEvent>);

}  // namespace kifo
