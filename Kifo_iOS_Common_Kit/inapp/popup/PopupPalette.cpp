#include "Kifo_iOS_Common_Kit/inapp/popup/PopupPalette.h"

namespace kifo {
namespace {

constexpr double kDim = 0.3;  ///< Of black over the host's window.

Color fillOf(const PopupPreferences& p) {
  if (p.appCommunicationItem) {
    if (const auto color = colorOf(p.appCommunicationItem->bgColor)) return *color;
  }
  return p.backgroundColor.value_or(Color::white());
}

Color accentOf(const PopupPreferences& p, const PopupPalette& palette) {
  const auto wanted = p.submitButton ? colorOf(p.submitButton->color) : std::nullopt;
  if (!wanted) return palette.ink;
  const Color seen = over(*wanted, palette.panel);
  return contrastRatio(seen, palette.panel) >= Contrast::mark ? seen : palette.ink;
}

}  // namespace

TextFace faceOf(TextRole role) {
  switch (role) {
    case TextRole::title:
      return {20, 600};
    case TextRole::description:
      return {15, 400};
    case TextRole::question:
      return {16, 500};
    case TextRole::option:
      return {15, 500};
    case TextRole::button:
      return {16, 600};
    case TextRole::label:
      return {14, 500};
    case TextRole::field:
      return {15, 400};
    case TextRole::score:
      return {18, 700};
    case TextRole::bound:
      return {13, 500};
    case TextRole::counter:
      return {11, 400};
    case TextRole::coupon:
      return {20, 700};
  }
  return {15, 400};
}

PopupPalette PopupPalette::of(const PopupPreferences& preferences, ContrastPolicy contrast,
                              const Color& window) {
  PopupPalette palette;
  palette.contrast = contrast;
  palette.panelFill = fillOf(preferences);
  palette.panel = over(palette.panelFill, mixed(window, {0, 0, 0, 1}, kDim));
  palette.ink = inkOn(palette.panel);
  palette.accent = accentOf(preferences, palette);
  return palette;
}

Color PopupPalette::text(TextRole role, const Color& wanted, const Color& behind) const {
  if (contrast == ContrastPolicy::off) return wanted;
  const bool less = contrast == ContrastPolicy::legible && faceOf(role).isLargeOrBold();
  return legibleOn(wanted, behind, less ? Contrast::largeText : Contrast::text);
}

Color PopupPalette::accentOn(const Color& surface) const {
  return contrastRatio(accent, surface) >= Contrast::mark ? accent : inkOn(surface);
}

Color PopupPalette::scoreText(const PopupPreferences& preferences) const {
  if (!preferences.backgroundColor) return ink;
  const Color& b = *preferences.backgroundColor;
  const bool dark = 1 - (0.299 * b.red + 0.587 * b.green + 0.114 * b.blue) >= 0.5;
  return dark ? Color::white() : Color{0, 0, 0, 1};
}

FocusRing FocusRing::on(const Color& surface, const Color& accent) {
  const Color line = contrastRatio(accent, surface) >= Contrast::mark ? accent : inkOn(surface);
  return {line, inkOn(line)};
}

}  // namespace kifo
