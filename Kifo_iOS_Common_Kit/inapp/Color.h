#pragma once

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

}  // namespace kifo
