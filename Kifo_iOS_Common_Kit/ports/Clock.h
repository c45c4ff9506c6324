#pragma once

#include <cstdint>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The wall clock and its time zone. It may jump in either direction. **Threading:** thread-safe.
class KIFO_EXPORT Clock {
 public:
  virtual ~Clock() = default;

  [[nodiscard]] virtual std::int64_t millisecondsSince1970() const = 0;
  /// The IANA name of the current time zone, such as Europe/Istanbul.
  [[nodiscard]] virtual std::string timeZone() const = 0;
};

/// Random identifiers. **Threading:** thread-safe, and safe across a fork.
class KIFO_EXPORT RandomIdentifiers {
 public:
  virtual ~RandomIdentifiers() = default;

  /// A random (version 4) UUID: 36 characters, upper case, hyphenated.
  [[nodiscard]] virtual std::string uuid() = 0;
};

}  // namespace kifo
