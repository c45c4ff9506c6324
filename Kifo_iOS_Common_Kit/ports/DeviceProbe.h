#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

enum class VolumeCapacity { total, available };

/// The result of reading a volume's size.
struct CapacityReading {
  enum class Outcome { known, missing, failed };  ///< failed: the query itself failed.
  Outcome outcome = Outcome::failed;
  std::int64_t bytes = 0;
};

/// Facts about the device. Every field may be unknown; see each operation.
///
/// **Threading:** thread-safe; reads never wait for a disk or a bus; an adapter with a slow source
/// returns its last reading.
class KIFO_EXPORT DeviceProbe {
 public:
  virtual ~DeviceProbe() = default;

  /// The hardware identifier, `uname`'s machine field.
  [[nodiscard]] virtual std::string machine() const = 0;
  /// The operating system's version text.
  [[nodiscard]] virtual std::string systemVersion() const = 0;
  /// An upper-case UUID that stays the same for this application on this device; none when unknown.
  [[nodiscard]] virtual std::optional<std::string> vendorIdentifier() const = 0;
  /// 0.0 to 1.0; -1.0 when there is no battery or its level is unknown.
  [[nodiscard]] virtual float batteryLevel() const = 0;
  /// The size of the volume that holds "/", in bytes.
  [[nodiscard]] virtual CapacityReading capacity(VolumeCapacity kind) const = 0;
};

}  // namespace kifo
