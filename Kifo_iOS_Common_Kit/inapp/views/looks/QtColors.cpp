#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

#include <algorithm>

#include <QFontInfo>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupPalette.h"

namespace kifo {

QColor toQColor(const Color& color) {
  const auto channel = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(channel(color.red), channel(color.green), channel(color.blue),
                          channel(color.alpha));
}

std::optional<QColor> toQColor(const std::optional<Color>& color) {
  return color ? std::optional(toQColor(*color)) : std::nullopt;
}

Color toColor(const QColor& color) {
  return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

QColor colorFromInt(std::uint32_t rgb) {
  return QColor::fromRgb(rgb & 0xFFFFFFU);
}

QColor textOn(const QColor& behind, const QColor& wanted, const QFont& font) {
  const TextFace face{QFontInfo(font).pixelSize(), font.weight()};
  return legibleOn(wanted.isValid() ? wanted : QColor(Qt::white), behind,
                   face.isLargeOrBold() ? Contrast::largeText : Contrast::text);
}

}  // namespace kifo
