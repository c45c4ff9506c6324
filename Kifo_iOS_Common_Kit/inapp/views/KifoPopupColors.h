#pragma once

#include <QColor>
#include <cstdint>

namespace kifo {

/// Colours for the alert: 24-bit numbers, and text that is never lost on what lies behind it.
///
/// **Threading:** thread-safe, no state.
class KifoPopupColors {
 public:
  /// The colour of a 24-bit RGB number; higher bits are ignored.
  static QColor fromInt(std::uint32_t rgb);
  /// How well `front` stands out against `back`: 1 (not at all) to 21 (black on white).
  static double contrast(const QColor& front, const QColor& back);
  /// `wished`, or black or white if that would hardly be seen on `back`. An invalid wish is
  /// white's.
  static QColor readable(const QColor& wished, const QColor& back);
  /// `share` (0 to 1) of `front` over `back`.
  static QColor mixed(const QColor& front, const QColor& back, double share);
};

}  // namespace kifo
