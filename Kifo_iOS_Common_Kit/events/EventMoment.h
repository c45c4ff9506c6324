#pragma once

#include <cstdint>
#include <memory>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"

namespace kifo {

/// What an event says of the moment at which it was sent, however much later it is composed.
///
/// **Threading:** a value.
struct EventMoment {
  /// The present. Reads the device and the position only where their switches are on.
  static EventMoment now();

  std::shared_ptr<const Session::Identity> identity;
  std::int64_t timestamp = 0;  ///< Milliseconds since 1970.
  KifoNotificationPermissionStatusType notificationPermissionStatus =
      KifoNotificationPermissionStatusType::UNKNOWN;
  EventParameters location;  ///< The location's keys; empty when they are not to be sent.
  EventParameters device;    ///< The keys of the device's state, likewise.
};

}  // namespace kifo
