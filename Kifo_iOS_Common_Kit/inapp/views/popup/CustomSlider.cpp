#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"

#include <algorithm>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace kifo {
namespace {

constexpr int kPages = 10;  ///< Page keys cross the range in this many steps.
constexpr int kGlideMilliseconds = 140;

constexpr std::int64_t kLimit = 1 << 30;  ///< Whole as an int and as a float.

int clampToInt(std::int64_t value) {
  return static_cast<int>(std::clamp(value, -kLimit, kLimit));
}

}  // namespace

CustomSlider::CustomSlider(const PopupTheme& theme, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), theme_(theme) {
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setCursor(Qt::PointingHandCursor);
  setMinimumSize(0, 0);
  glide_.setEasingCurve(QEasingCurve::OutCubic);
  glide_.setDuration(theme.milliseconds(std::chrono::milliseconds(kGlideMilliseconds)));
  connect(&glide_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { moveTo(value.toFloat()); });
}

void CustomSlider::setScores(std::int64_t lowest, std::int64_t highest) {
  setRange(clampToInt(lowest), clampToInt(highest));
  setPageStep(std::max(1, static_cast<int>(span() / kPages)));
  setValue(minimum());
  moveTo(static_cast<float>(minimum()));
  touched_ = false;
}

ScoreLook CustomSlider::look() const {
  return {minimum(), maximum(), position_, touched_, layoutDirection() == Qt::RightToLeft};
}

void CustomSlider::moveTo(float position) {
  if (position == position_) return;
  position_ = position;
  touched_ = true;
  const int whole = static_cast<int>(position);
  if (whole != value()) setValue(whole);
  update();
  Q_EMIT valueDidChange(position_);
}

/// A value set from outside (keys, wheel, assistive technology) takes the thumb to that very score;
/// a drag has moved the thumb already.
void CustomSlider::sliderChange(SliderChange change) {
  QSlider::sliderChange(change);
  if (change != SliderValueChange || static_cast<int>(position_) == value()) return;
  moveTo(static_cast<float>(value()));
}

/// To the whole score that is shown, which is the one that is sent.
void CustomSlider::glideToWhole() {
  glide_.stop();
  const float whole = static_cast<float>(value());
  if (glide_.duration() == 0 || !isVisible()) return moveTo(whole);
  glide_.setStartValue(position_);
  glide_.setEndValue(whole);
  glide_.start();
}

void CustomSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  glide_.stop();
  touched_ = true;
  setSliderDown(true);
  moveTo(look().positionAt(event->position().x(), width()));
}

void CustomSlider::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) moveTo(look().positionAt(event->position().x(), width()));
}

void CustomSlider::mouseReleaseEvent(QMouseEvent*) {
  if (!isSliderDown()) return;
  setSliderDown(false);
  glideToWhole();
  update();
}

void CustomSlider::keyPressEvent(QKeyEvent* event) {
  byKeyboard_ = true;
  if (event->key() == Qt::Key_Escape) return event->ignore();
  glide_.stop();
  const int before = value();
  QSlider::keyPressEvent(event);
  // From between two scores, the step that lands on the score shown still moves the thumb.
  if (value() == before) moveTo(static_cast<float>(value()));
  update();
}

/// A wheel that only passes by scrolls the panel and leaves the score alone.
void CustomSlider::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) return event->ignore();
  QSlider::wheelEvent(event);
}

void CustomSlider::focusInEvent(QFocusEvent* event) {
  if (event->reason() != Qt::ActiveWindowFocusReason) {
    byKeyboard_ = event->reason() != Qt::MouseFocusReason;
  }
  QSlider::focusInEvent(event);
}

void CustomSlider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  look().paint(painter, theme_, rect(), {isSliderDown(), underMouse(), hasFocus() && byKeyboard_});
}

}  // namespace kifo
