#pragma once

#include <optional>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

struct Coordinate {
  double latitude = 0.0;   ///< Degrees, -90 to 90.
  double longitude = 0.0;  ///< Degrees, -180 to 180.
};

/// The position as the host's own use of location made it known. Never asks for permission and
/// never starts positioning.
///
/// **Threading:** thread-safe, never waits.
class KIFO_EXPORT PositionSource {
 public:
  virtual ~PositionSource() = default;

  /// 0 not determined, 1 restricted, 2 denied, 3 authorized always, 4 authorized when in use.
  [[nodiscard]] virtual int authorizationStatus() const = 0;
  /// 0 active (in the foreground), 1 inactive, 2 in the background.
  [[nodiscard]] virtual int applicationState() const = 0;
  [[nodiscard]] virtual std::optional<Coordinate> location() const = 0;
};

}  // namespace kifo
