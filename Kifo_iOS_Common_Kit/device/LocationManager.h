#pragma once

#include <optional>
#include <string>
#include <utility>

namespace kifo {

/// The device's last known position, for payloads. Passive: it neither asks for permission nor
/// starts a positioning device, it reads what the host's own use of location made known.
///
/// **Threading:** thread-safe.
class LocationManager {
 public:
  /// Latitude and longitude, degrees, each as the shortest text that reads back as the same number;
  /// none without permission, while the application is not active, or without a known position.
  static std::optional<std::pair<std::string, std::string>> currentLocation();
};

}  // namespace kifo
