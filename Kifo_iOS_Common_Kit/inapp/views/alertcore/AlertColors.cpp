#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertColors.h"

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertLayout.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

constexpr double kTint = 0.12;        ///< Of the alert's colour in a button that stands back.
constexpr double kSeenSurface = 1.1;  ///< Contrast below which a button needs an outline.

}  // namespace

AlertColors AlertColors::of(const KifoAppearance& appearance, const QColor& color) {
  AlertColors colors;
  colors.card = appearance.contentViewColor;
  colors.border = appearance.contentViewBorderColor;
  colors.title = textOn(colors.card, appearance.titleColor, appearance.kTitleFont);
  colors.text = textOn(colors.card, appearance.subTitleColor, appearance.kTextFont);
  // A line or a ring in the card's own colour would not be seen.
  const bool isSeen = contrastRatio(color, colors.card) >= Contrast::mark;
  colors.accent = isSeen ? color : colors.text;
  colors.line = mixed(colors.card, colors.text, 0.15);
  colors.field = mixed(colors.card, colors.text, 0.03);
  colors.fieldBorder = mixed(colors.card, colors.text, 0.35);
  colors.selectedText = legibleOn(Qt::white, colors.accent, Contrast::text);
  return colors;
}

AlertButtonLook lookOf(const AlertButton& button, bool standsBack, const KifoAppearance& appearance,
                       const QColor& color, const QColor& text) {
  const QColor card = appearance.contentViewColor;
  const auto chosen = [](const QColor& custom, const QColor& otherwise) {
    return custom.isValid() ? custom : otherwise;
  };
  AlertButtonLook look;
  look.background =
      chosen(button.customBackgroundColor, standsBack ? mixed(card, color, kTint) : color);
  look.text = textOn(look.background, chosen(button.customTextColor, standsBack ? color : text),
                     appearance.kButtonFont);
  if (contrastRatio(look.background, card) < kSeenSurface) {
    look.border = mixed(card, look.text, 0.3);
  }
  look.font = appearance.kButtonFont;
  look.cornerRadius = appearance.buttonCornerRadius;
  look.leastHeight = AlertLayout::whole(appearance.kButtonHeight);
  return look;
}

}  // namespace kifo
