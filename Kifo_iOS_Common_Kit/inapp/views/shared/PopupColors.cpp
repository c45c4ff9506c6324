#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupColors.h"

#include <algorithm>
#include <cmath>

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"

namespace kifo {
namespace {

constexpr double kFloor = 1.5;
constexpr double kStrong = 4.5;
constexpr int kShiftSteps = 20;

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

/// The colour moved towards black or white, whichever is the way away from `behind`, until it can
/// be read. A grey has no hue to keep and becomes ink at once.
QColor shifted(const QColor& color, const QColor& behind) {
  const QColor ink = inkOn(behind);
  if (color.hslSaturationF() < 0.1) return ink;
  const QColor pole = contrastRatio(Qt::white, behind) > contrastRatio(Qt::black, behind)
                          ? QColor(Qt::white)
                          : QColor(Qt::black);
  for (int step = 1; step < kShiftSteps; ++step) {
    const QColor candidate = mixed(color, pole, static_cast<double>(step) / kShiftSteps);
    if (contrastRatio(candidate, behind) >= kStrong) return candidate;
  }
  return ink;
}

}  // namespace

QColor toQColor(const Color& color) {
  const auto channel = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(channel(color.red), channel(color.green), channel(color.blue),
                          channel(color.alpha));
}

std::optional<QColor> colorOf(const std::optional<std::string>& hex) {
  if (!hex) return std::nullopt;
  return toQColor(colorFromHex(*hex));
}

QColor over(const QColor& top, const QColor& behind) {
  QColor opaque = top;
  opaque.setAlpha(255);
  return mixed(behind, opaque, top.alphaF());
}

QColor mixed(const QColor& a, const QColor& b, double amount) {
  const auto channel = [amount](int from, int to) {
    return static_cast<int>(std::lround(from + (to - from) * amount));
  };
  return {channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue())};
}

double contrastRatio(const QColor& a, const QColor& b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

QColor inkOn(const QColor& behind) {
  const QColor soft(0x1c, 0x1c, 0x1e);
  const double white = contrastRatio(Qt::white, behind);
  if (contrastRatio(soft, behind) >= std::max(white, kStrong)) return soft;
  return white >= contrastRatio(Qt::black, behind) ? QColor(Qt::white) : QColor(Qt::black);
}

QColor legibleOn(const QColor& wanted, const QColor& behind, ContrastPolicy policy) {
  if (policy == ContrastPolicy::off) return wanted;
  const double minimum = policy == ContrastPolicy::strong ? kStrong : kFloor;
  const QColor seen = over(wanted, behind);
  return contrastRatio(seen, behind) >= minimum ? wanted : shifted(seen, behind);
}

}  // namespace kifo
