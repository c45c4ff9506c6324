#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Session.h"

namespace kifo {

class Runtime;

/// Everything that an event's payload and headers take from the moment at which it was sent,
/// however much later they are composed.
///
/// **Threading:** a value.
struct EventSnapshot {
  /// The present. Reads the device and the position only where their switches are on.
  static EventSnapshot take(const Runtime& runtime);

  std::shared_ptr<const Session::Identity> identity;
  std::int64_t timestamp = 0;  ///< Milliseconds since 1970.
  std::string timeZone;        ///< An IANA name.
  KifoNotificationPermissionStatusType notificationPermissionStatus =
      KifoNotificationPermissionStatusType::UNKNOWN;
  EventParameters location;  ///< The location's keys; empty when they are not to be sent.
  EventParameters device;    ///< The keys of the device's state, likewise.
};

}  // namespace kifo
