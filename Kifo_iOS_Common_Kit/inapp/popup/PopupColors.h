#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/inapp/Color.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

/// Arithmetic of colours, and the rule that keeps text legible. Contrast is the ratio of relative
/// luminances, from 1 (the same) to 21 (black on white).
///
/// **Threading:** pure functions.
namespace kifo {

/// The least contrast of text, and of what is no text but has to be seen.
struct Contrast {
  static constexpr double text = 4.5;
  static constexpr double largeText = 3.0;  ///< Large or bold.
  static constexpr double mark = 3.0;       ///< Focus rings, radio marks, indicators.
};

/// The colour of a campaign's hex text; none when there is no text.
KIFO_SHARED std::optional<Color> colorOf(const std::optional<std::string>& hex);

/// What is seen when `top` lies over the opaque `behind`; opaque.
KIFO_SHARED Color over(const Color& top, const Color& behind);

/// `amount` of `b` in `a`, 0 to 1; opaque.
KIFO_SHARED Color mixed(const Color& a, const Color& b, double amount);

KIFO_SHARED double contrastRatio(const Color& a, const Color& b);

/// Near-black or white, whichever stands out more from `behind`.
KIFO_SHARED Color inkOn(const Color& behind);

/// `wanted` when it has at least `minimum` of contrast on the opaque `behind`; otherwise the colour
/// closest to it, on the way to black or to white, that has.
KIFO_SHARED Color legibleOn(const Color& wanted, const Color& behind, double minimum);

}  // namespace kifo
