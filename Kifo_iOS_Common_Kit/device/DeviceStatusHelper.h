#pragma once

#include <string>
#include <string_view>

namespace kifo {

/// The marketing name of this device's hardware: the name that the model table gives for the
/// hardware identifier, or the identifier itself with each comma turned into a point.
std::string modelName();
/// The same for any identifier.
std::string modelName(std::string_view identifier);
/// "ios", whatever the system: the protocol's own word.
std::string deviceOs();
/// The operating system's version text.
std::string osVersion();
/// The device's upper-case UUID for this application, or "" when there is none.
std::string deviceId();

/// Readings of the device that change.
///
/// **Threading:** thread-safe; as quick as the device probe.
class DeviceStatusHelper {
 public:
  static constexpr std::string_view LOG_TAG =
      "Kifo DeviceStatusHelper:";  ///< Starts its console lines.

  /// Whole percents, 0 to 100; "-100" when the level is unknown. A level that no whole number can
  /// hold is a fatal error.
  static std::string batteryLevel();
  /// Bytes of the volume that holds "/"; "-1" when they cannot be known. A question that fails is
  /// answered with the last reading, "-1" before any.
  static std::string totalDiskCapacity();
  static std::string availableDiskCapacity();
};

}  // namespace kifo
