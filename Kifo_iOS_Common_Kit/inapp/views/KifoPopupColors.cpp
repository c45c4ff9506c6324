#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupColors.h"

#include <algorithm>
#include <cmath>

namespace kifo {
namespace {

// Below this, letters are guessed rather than read. White on the green of success (2.6) is above.
constexpr double kLeastContrast = 2.5;

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

}  // namespace

QColor KifoPopupColors::fromInt(std::uint32_t rgb) {
  return QColor::fromRgb(rgb & 0xFFFFFFU);
}

double KifoPopupColors::contrast(const QColor& front, const QColor& back) {
  const auto [darker, lighter] =
      std::minmax({luminance(mixed(front, back, front.alphaF())), luminance(back)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor KifoPopupColors::readable(const QColor& wished, const QColor& back) {
  const QColor first = wished.isValid() ? wished : QColor(Qt::white);
  if (contrast(first, back) >= kLeastContrast) return first;
  const QColor dark(0x1E, 0x1E, 0x1E);
  return contrast(dark, back) >= contrast(Qt::white, back) ? dark : QColor(Qt::white);
}

QColor KifoPopupColors::mixed(const QColor& front, const QColor& back, double share) {
  const auto channel = [share](float a, float b) {
    return static_cast<float>(a * share + b * (1 - share));
  };
  return QColor::fromRgbF(channel(front.redF(), back.redF()),
                          channel(front.greenF(), back.greenF()),
                          channel(front.blueF(), back.blueF()));
}

}  // namespace kifo
