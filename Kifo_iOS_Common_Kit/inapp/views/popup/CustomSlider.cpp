#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"

#include <algorithm>
#include <cmath>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

namespace kifo {
namespace {

constexpr double kTrackHeight = 10;
constexpr double kThumb = 20;  ///< Diameter.
constexpr double kHeldThumb = 24;
constexpr int kPages = 10;  ///< Page keys cross the range in this many steps.
constexpr int kMostTicks = 10;
constexpr int kGlideMilliseconds = 140;
constexpr double kRingGap = 8;  ///< From the thumb to the bounds of its focus ring.

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

QRectF CustomSlider::trackRect(const QRectF& bounds) {
  return {bounds.x(), bounds.y() + bounds.height() / 2, bounds.width(), kTrackHeight};
}

QRectF CustomSlider::track() const {
  return trackRect(QRectF(rect()).adjusted(0, room, 0, -room));
}

double CustomSlider::across(double score) const {
  const QRectF place = track();
  const double fraction = span() > 0 ? (score - minimum()) / span() : 0;
  const double along = rightToLeft() ? 1 - fraction : fraction;
  return place.x() + kThumb / 2 + along * (place.width() - kThumb);
}

QPointF CustomSlider::thumbCentre() const {
  return {across(static_cast<double>(position_)), track().center().y()};
}

void CustomSlider::moveTo(float position) {
  position = std::clamp(position, static_cast<float>(minimum()), static_cast<float>(maximum()));
  if (position == position_) return;
  position_ = position;
  touched_ = true;
  const int whole =
      static_cast<int>(std::clamp(std::trunc(static_cast<double>(position)),
                                  static_cast<double>(minimum()), static_cast<double>(maximum())));
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

void CustomSlider::follow(double x) {
  const double way = std::max(width() - kThumb, 1.0);
  double along = std::clamp((x - kThumb / 2) / way, 0.0, 1.0);
  if (rightToLeft()) along = 1 - along;
  moveTo(static_cast<float>(minimum() + along * span()));
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
  follow(event->position().x());
}

void CustomSlider::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) follow(event->position().x());
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

void CustomSlider::paintTrack(QPainter& painter) const {
  const QRectF place = track();
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme_.shade(0.18));
  painter.drawRoundedRect(place, kTrackHeight / 2, kTrackHeight / 2);
  if (touched_) {
    QRectF filled = place;
    if (rightToLeft()) {
      filled.setLeft(thumbCentre().x());
    } else {
      filled.setRight(thumbCentre().x());
    }
    painter.setBrush(theme_.accent);
    painter.drawRoundedRect(filled, kTrackHeight / 2, kTrackHeight / 2);
  }
  if (span() <= kMostTicks) paintTicks(painter);
}

void CustomSlider::paintTicks(QPainter& painter) const {
  for (int score = minimum(); score <= maximum(); ++score) {
    const bool filled = touched_ && static_cast<float>(score) <= position_;
    painter.setBrush(filled ? inkOn(theme_.accent) : theme_.shade(0.55));
    painter.drawEllipse(QPointF(across(score), track().center().y()), 1.5, 1.5);
  }
}

void CustomSlider::paintThumb(QPainter& painter) const {
  const QPointF centre = thumbCentre();
  const double radius = (isSliderDown() ? kHeldThumb : kThumb) / 2 - 0.5;
  if (touched_) {
    painter.setBrush(Qt::white);
    painter.setPen(QPen(QColor(0, 0, 0, underMouse() || isSliderDown() ? 120 : 70), 1));
    painter.drawEllipse(centre, radius, radius);
  } else {
    painter.setBrush(theme_.panel);
    painter.setPen(QPen(theme_.accent, 2));
    painter.drawEllipse(centre, radius - 1, radius - 1);
  }
  if (!hasFocus() || !byKeyboard_) return;
  const double ring = kThumb / 2 + kRingGap;
  const QRectF bounds(centre - QPointF(ring, ring), QSizeF(2 * ring, 2 * ring));
  paintFocusRing(painter, bounds, ring, theme_.panel, theme_.accent);
}

void CustomSlider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintTrack(painter);
  paintThumb(painter);
}

}  // namespace kifo
