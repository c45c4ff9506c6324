#pragma once

#include <optional>
#include <string>

#include <QColor>

#include "Kifo_iOS_Common_Kit/inapp/Color.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopUpOptions.h"

/// Colours as the popups paint them, and the rule that keeps them legible. Contrast is the ratio of
/// relative luminances, from 1 (the same) to 21 (black on white).
///
/// **Threading:** pure functions.
namespace kifo {

QColor toQColor(const Color& color);

/// The colour of a campaign's hex text; none when there is no text.
std::optional<QColor> colorOf(const std::optional<std::string>& hex);

/// What is seen when `top` lies over the opaque `behind`; opaque.
QColor over(const QColor& top, const QColor& behind);

/// `amount` of `b` in `a`, 0 to 1; opaque.
QColor mixed(const QColor& a, const QColor& b, double amount);

double contrastRatio(const QColor& a, const QColor& b);

/// Near-black or white, whichever stands out more from `behind`.
QColor inkOn(const QColor& behind);

/// `wanted`, or a colour of its hue that can be read when `wanted` on `behind` has less contrast
/// than the policy allows. A colour that is replaced is replaced by one of at least 4.5:1.
QColor legibleOn(const QColor& wanted, const QColor& behind, ContrastPolicy policy);

}  // namespace kifo
