#pragma once

#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/events/EventMoment.h"

namespace kifo {

/// A record that can be turned into its dictionary, once: what it holds goes over into it.
class Parsable {
 public:
  virtual ~Parsable() = default;

  [[nodiscard]] virtual EventParameters parameters() = 0;
};

/// One event before it is composed. Each kind of event derives from it and takes down, when it is
/// made, the keys of its own.
///
/// Composing is most of the work that an event is, so it is not the sender's: it is done by
/// whichever thread first needs the dictionary. All that belongs to the moment of sending is taken
/// down before.
///
/// **Threading:** made and given its moment on the thread that sends; composed on any other. It
/// shares nothing that a host could change meanwhile.
class BaseEvent : public Parsable {
 public:
  /// An event of the SDK's own: scenario "ALL", the session's actor id without commas.
  explicit BaseEvent(std::string name);
  explicit BaseEvent(KifoEventType type) : BaseEvent(std::string(rawValue(type))) {}

  /// Location, common keys, device keys, then the kind's own keys and "name", each inserted over
  /// what is there.
  [[nodiscard]] EventParameters parameters() final;

  std::string scenario;
  std::string actorId;
  std::string name;
  EventMoment moment;  ///< To be taken once the event is to be sent.

 protected:
  EventParameters initialParameters_;  ///< What the composition starts from.
  EventParameters ownKeys_;            ///< What the kind adds last.
};

}  // namespace kifo
