#pragma once

#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A colour as the popups use it. **Threading:** a plain value.
struct Color {
  double red = 0.0;    ///< 0 to 1.
  double green = 0.0;  ///< 0 to 1.
  double blue = 0.0;   ///< 0 to 1.
  double alpha = 1.0;  ///< 0 (clear) to 1 (opaque).

  static constexpr Color white() { return {1.0, 1.0, 1.0, 1.0}; }

  friend bool operator==(const Color&, const Color&) = default;
};

/// The colour that a hexadecimal text stands for. Characters that are neither letters nor digits
/// are trimmed from both ends; then 8 characters are alpha, red, green, blue, 6 are red, green,
/// blue, 3 are one digit a channel, and any other length is opaque black. Never fails.
KIFO_EXPORT Color colorFromHex(std::string_view text);

}  // namespace kifo
