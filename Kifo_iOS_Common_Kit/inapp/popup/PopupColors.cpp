#include "Kifo_iOS_Common_Kit/inapp/popup/PopupColors.h"

#include <algorithm>
#include <cmath>

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"

namespace kifo {
namespace {

constexpr Color kBlack{0, 0, 0, 1};
constexpr int kSteps = 64;  ///< From a colour to black or white.

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const Color& color) {
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

/// Steps from `color` towards `pole` until it stands out from `behind`; more than there are when it
/// never does.
int stepsTo(const Color& pole, const Color& color, const Color& behind, double minimum) {
  int step = 1;
  while (step <= kSteps &&
         contrastRatio(mixed(color, pole, double(step) / kSteps), behind) < minimum)
    ++step;
  return step;
}

}  // namespace

std::optional<Color> colorOf(const std::optional<std::string>& hex) {
  return hex ? std::optional(colorFromHex(*hex)) : std::nullopt;
}

Color over(const Color& top, const Color& behind) {
  return mixed(behind, top, top.alpha);
}

Color mixed(const Color& a, const Color& b, double amount) {
  return {std::lerp(a.red, b.red, amount), std::lerp(a.green, b.green, amount),
          std::lerp(a.blue, b.blue, amount), 1};
}

double contrastRatio(const Color& a, const Color& b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

Color inkOn(const Color& behind) {
  constexpr Color kSoft{0x1c / 255.0, 0x1c / 255.0, 0x1e / 255.0, 1};
  const double white = contrastRatio(Color::white(), behind);
  if (contrastRatio(kSoft, behind) >= std::max(white, Contrast::text)) return kSoft;
  return white >= contrastRatio(kBlack, behind) ? Color::white() : kBlack;
}

Color legibleOn(const Color& wanted, const Color& behind, double minimum) {
  const Color seen = over(wanted, behind);
  if (contrastRatio(seen, behind) >= minimum) return wanted;
  const int toBlack = stepsTo(kBlack, seen, behind, minimum);
  const int toWhite = stepsTo(Color::white(), seen, behind, minimum);
  const int steps = std::min(toBlack, toWhite);
  if (steps > kSteps) return inkOn(behind);
  return mixed(seen, toBlack <= toWhite ? kBlack : Color::white(), double(steps) / kSteps);
}

}  // namespace kifo
