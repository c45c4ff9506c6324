#pragma once

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/ContrastPolicy.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupColors.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The roles that text plays in a popup; each has its size and weight.
enum class TextRole {
  title,
  description,
  question,
  option,
  button,
  label,
  field,
  score,
  bound,
  counter,
  coupon
};

/// How the text of a role is set at a font scale of 1.
struct TextFace {
  int pixels;  ///< Logical pixels.
  int weight;  ///< 400 (normal) to 700 (bold), as font files number it.

  /// Text that is legible at a lower contrast.
  [[nodiscard]] bool isLargeOrBold() const { return pixels >= 24 || weight >= 600; }
};

KIFO_SHARED TextFace faceOf(TextRole role);

/// The colours of one popup, all of which follow from the campaign's.
///
/// **Threading:** a plain value.
struct KIFO_SHARED PopupPalette {
  ContrastPolicy contrast = ContrastPolicy::legible;
  Color panelFill = Color::white();  ///< As the campaign gives it, its transparency included.
  Color panel = Color::white();      ///< As it is seen; opaque.
  Color ink;                         ///< Neutral text and glyphs on the panel.
  Color accent;                      ///< Marks what is chosen; stands out from the panel.

  /// `window`: the colour of the host's window, over which the campaign is shown.
  static PopupPalette of(const PopupPreferences& preferences, ContrastPolicy contrast,
                         const Color& window);

  /// `wanted` as text of this role may be painted on `behind`.
  [[nodiscard]] Color text(TextRole role, const Color& wanted, const Color& behind) const;
  /// The panel with some ink in it, 0 to 1: hover, borders, placeholders.
  [[nodiscard]] Color shade(double amount) const { return mixed(panel, ink, amount); }
  /// What marks something on `surface`: the accent where it stands out, ink otherwise.
  [[nodiscard]] Color accentOn(const Color& surface) const;
  /// The score's labels: white on a dark background, black on a light one, ink without one.
  [[nodiscard]] Color scoreText(const PopupPreferences& preferences) const;
};

/// Shows where the keyboard is: two lines, one inside the other. The outer line stands out from the
/// surface around it, the inner line from the outer one.
struct KIFO_SHARED FocusRing {
  static constexpr double width = 2;  ///< Of each line, in logical pixels.
  static constexpr double inset = 3;  ///< From the control's edge to the outer line.

  Color outer;
  Color inner;

  /// The ring on a surface; the accent where it stands out.
  static FocusRing on(const Color& surface, const Color& accent);
};

}  // namespace kifo
