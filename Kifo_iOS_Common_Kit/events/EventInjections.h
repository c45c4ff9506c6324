#pragma once

#include <optional>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/ViewController.h"

/// The capabilities of which an event's dictionary is put together. Each inserts its keys and
/// nothing else; a key that is already there gets the new value.
namespace kifo {

class Runtime;
class Session;
struct BaseEvent;
struct EventSnapshot;

/// Puts `more` over what is there.
void insertAll(EventParameters& parameters, EventParameters more);

/// The tokens: "push_token", "apns_token".
struct EventTokenInjected {
  static void inject(EventParameters& parameters, const EventSnapshot& snapshot);
};

/// Who sends: "sdk_version", "channel", "sync", "application_name".
struct EventSdkInjected {
  static void inject(EventParameters& parameters, const EventSnapshot& snapshot);
};

/// Keys that every event has: the tokens, the SDK, the actor, the device's identity, the time and
/// the permission for notifications.
struct EventPrimaryInjected {
  static void inject(EventParameters& parameters, const BaseEvent& event);
};

/// The device's present state, each key only when its switch is on: battery, network, disk.
struct EventDeviceInjected {
  static void inject(EventParameters& parameters, const Runtime& runtime);
};

/// Something that may know a position, as latitude and longitude text.
struct Locationable {
  static std::optional<std::pair<std::string, std::string>> location();
};

/// "longitude" and "latitude", when the host asked for them and they are known.
struct EventLocationInjected {
  static void inject(EventParameters& parameters, const Session& session);
};

/// The page that an event belongs to: the caller's name for it, else the screen's class name.
struct PageContext {
  PageContext() = default;
  PageContext(const ViewController* controller, std::optional<std::string> pageName);
  static PageContext named(std::string name);

  std::optional<std::string> name;  ///< None without a screen.
};

/// "page_name", when the event carries a screen.
struct EventPageInjected {
  static void inject(EventParameters& parameters, const PageContext& page);
};

/// All that an event has besides its own keys, in the order in which it is inserted. The
/// snapshot's keys are moved into the parameters.
struct BaseInjected {
  static void inject(EventParameters& parameters, BaseEvent& event);
};

}  // namespace kifo
