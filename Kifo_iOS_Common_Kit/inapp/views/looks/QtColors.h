#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <QColor>
#include <QFont>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupColors.h"

/// The colours of `PopupColors.h` as Qt has them.
///
/// **Threading:** pure functions.
namespace kifo {

KIFO_SHARED QColor toQColor(const Color& color);
KIFO_SHARED std::optional<QColor> toQColor(const std::optional<Color>& color);
KIFO_SHARED Color toColor(const QColor& color);

/// The colour of a 24-bit RGB number; higher bits are ignored.
KIFO_SHARED QColor colorFromInt(std::uint32_t rgb);

inline QColor over(const QColor& top, const QColor& behind) {
  return toQColor(over(toColor(top), toColor(behind)));
}
inline QColor mixed(const QColor& a, const QColor& b, double amount) {
  return toQColor(mixed(toColor(a), toColor(b), amount));
}
inline double contrastRatio(const QColor& a, const QColor& b) {
  return contrastRatio(toColor(a), toColor(b));
}
inline QColor inkOn(const QColor& behind) {
  return toQColor(inkOn(toColor(behind)));
}
inline QColor legibleOn(const QColor& wanted, const QColor& behind, double minimum) {
  return toQColor(legibleOn(toColor(wanted), toColor(behind), minimum));
}

/// `wanted` as text in `font` may be painted on the opaque `behind`: with 3:1 of contrast for large
/// or bold text, 4.5:1 for all other. An invalid colour counts as white.
KIFO_SHARED QColor textOn(const QColor& behind, const QColor& wanted, const QFont& font);

}  // namespace kifo
