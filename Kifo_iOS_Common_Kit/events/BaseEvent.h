#pragma once

#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"

namespace kifo {

/// A record that can be turned into its dictionary, once: what it holds goes over into it.
class Parsable {
 public:
  virtual ~Parsable() = default;

  [[nodiscard]] virtual EventParameters parameters() = 0;
};

/// One event before it is composed. Each kind of event derives from it and adds the keys of its
/// own.
///
/// **Threading:** a value; composed on the thread that sends.
class BaseEvent : public Parsable {
 public:
  /// An event of the SDK's own: scenario "ALL", the session's actor id without commas.
  explicit BaseEvent(std::string name);
  explicit BaseEvent(KifoEventType type) : BaseEvent(std::string(rawValue(type))) {}

  /// Location, common keys, device keys, then the kind's own keys, each inserted over what is
  /// there.
  [[nodiscard]] EventParameters parameters() final;

  std::string scenario;
  std::string actorId;
  std::string name;

 protected:
  /// What the composition starts from.
  [[nodiscard]] virtual EventParameters initialParameters() { return {}; }
  /// Adds the kind's own keys; by default "name".
  virtual void addOwnKeys(EventParameters& parameters) const;
};

}  // namespace kifo
