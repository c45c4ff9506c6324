#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertAnimator.h"

#include <QEasingCurve>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace kifo {
namespace {

constexpr int kLongestWay = 200;

// A damped spring from 0 to 1: past it by a tenth once, then back.
double spring(double time) {
  return 1 - std::exp(-6 * time) * std::cos(2.25 * std::numbers::pi * time) * (1 - time * time);
}

QEasingCurve springCurve() {
  QEasingCurve curve;
  curve.setCustomType(spring);
  return curve;
}

int milliseconds(std::chrono::milliseconds duration) {
  return static_cast<int>(
      std::clamp<long long>(duration.count(), 0, std::numeric_limits<int>::max()));
}

}  // namespace

AlertAnimator::AlertAnimator(QObject* parent) : QObject(parent) {
  connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    if (!isRunning()) return;
    position_ = value.toDouble();
    Q_EMIT moved();
  });
  connect(&animation_, &QVariantAnimation::finished, this, &AlertAnimator::arrive);
}

void AlertAnimator::enter(KifoAnimationStyle style, bool spring, const AlertMotion& motion) {
  style_ = style;
  const bool moves = style != KifoAnimationStyle::noAnimation && !motion.reduced;
  const auto duration = spring ? motion.springDuration : motion.showDuration;
  run(1, moves ? duration : std::chrono::milliseconds::zero(),
      spring ? springCurve() : QEasingCurve(QEasingCurve::OutCubic));
}

void AlertAnimator::leave(const AlertMotion& motion) {
  const bool moves = style_ != KifoAnimationStyle::noAnimation && !motion.reduced;
  // A card that had hardly come need not take the whole time to go.
  const auto duration = std::chrono::milliseconds(
      std::llround(static_cast<double>(motion.hideDuration.count()) * opacity()));
  run(0, moves ? duration : std::chrono::milliseconds::zero(), QEasingCurve(QEasingCurve::InCubic));
}

void AlertAnimator::reset() {
  animation_.stop();
  position_ = 0;
}

void AlertAnimator::run(double end, std::chrono::milliseconds duration, const QEasingCurve& curve) {
  animation_.stop();
  goal_ = end;
  if (duration.count() <= 0) return arrive();
  animation_.setStartValue(position_);
  animation_.setEndValue(end);
  animation_.setDuration(milliseconds(duration));
  animation_.setEasingCurve(curve);
  animation_.start();
  QTimer::singleShot(0, this, [this] {
    if (isRunning()) Q_EMIT began();
  });
}

void AlertAnimator::arrive() {
  position_ = goal_;
  Q_EMIT moved();
  if (goal_ > 0) {
    Q_EMIT entered();
  } else {
    Q_EMIT left();
  }
}

double AlertAnimator::opacity() const {
  return std::clamp(position_, 0.0, 1.0);
}

QPoint AlertAnimator::offset(const QRect& place, const QRect& window) const {
  const auto away = [this](int outside) {
    return static_cast<int>(std::lround(std::min(outside, kLongestWay) * (1 - position_)));
  };
  switch (style_) {
    case KifoAnimationStyle::topToBottom:
      return {0, -away(place.bottom() - window.top())};
    case KifoAnimationStyle::bottomToTop:
      return {0, away(window.bottom() - place.top())};
    case KifoAnimationStyle::leftToRight:
      return {-away(place.right() - window.left()), 0};
    case KifoAnimationStyle::rightToLeft:
      return {away(window.right() - place.left()), 0};
    case KifoAnimationStyle::noAnimation:
      break;
  }
  return {};
}

}  // namespace kifo
