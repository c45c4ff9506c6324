#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"

#include <algorithm>
#include <cmath>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupColors.h"

namespace kifo {
namespace {

constexpr double kTrackHeight = 10;
constexpr double kThumb = 20;  ///< Diameter.
constexpr int kPages = 10;     ///< Page keys cross the range in this many steps.

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
}

void CustomSlider::setScores(std::int64_t lowest, std::int64_t highest) {
  setRange(clampToInt(lowest), clampToInt(highest));
  const double span = static_cast<double>(maximum()) - minimum();
  setPageStep(std::max(1, static_cast<int>(span / kPages)));
  setValue(minimum());
  moveTo(static_cast<float>(minimum()));
}

QRectF CustomSlider::trackRect(const QRectF& bounds) {
  return {bounds.x(), bounds.y() + bounds.height() / 2, bounds.width(), kTrackHeight};
}

double CustomSlider::fraction() const {
  const double span = static_cast<double>(maximum()) - minimum();
  return span > 0 ? (static_cast<double>(position_) - minimum()) / span : 0;
}

QPointF CustomSlider::thumbCentre() const {
  const QRectF track = trackRect(rect());
  const double along = rightToLeft() ? 1 - fraction() : fraction();
  return {track.x() + kThumb / 2 + along * (track.width() - kThumb), track.center().y()};
}

void CustomSlider::moveTo(float position) {
  position = std::clamp(position, static_cast<float>(minimum()), static_cast<float>(maximum()));
  if (position == position_) return;
  position_ = position;
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
  const double room = std::max(width() - kThumb, 1.0);
  double along = std::clamp((x - kThumb / 2) / room, 0.0, 1.0);
  if (rightToLeft()) along = 1 - along;
  const double span = static_cast<double>(maximum()) - minimum();
  moveTo(static_cast<float>(minimum() + along * span));
}

void CustomSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  setSliderDown(true);
  follow(event->position().x());
}

void CustomSlider::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) follow(event->position().x());
}

void CustomSlider::mouseReleaseEvent(QMouseEvent*) {
  setSliderDown(false);
  update();
}

void CustomSlider::keyPressEvent(QKeyEvent* event) {
  byKeyboard_ = true;
  if (event->key() == Qt::Key_Escape) return event->ignore();
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
  const QRectF track = trackRect(rect());
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme_.shade(0.18));
  painter.drawRoundedRect(track, kTrackHeight / 2, kTrackHeight / 2);
  QRectF filled = track;
  if (rightToLeft()) {
    filled.setLeft(thumbCentre().x());
  } else {
    filled.setRight(thumbCentre().x());
  }
  painter.setBrush(theme_.accent);
  painter.drawRoundedRect(filled, kTrackHeight / 2, kTrackHeight / 2);
}

void CustomSlider::paintThumb(QPainter& painter) const {
  const QPointF centre = thumbCentre();
  const double radius = kThumb / 2 - 0.5;
  const bool marked = hasFocus() && byKeyboard_;
  painter.setBrush(isSliderDown() ? QColor(0xe4, 0xe4, 0xe8) : QColor(Qt::white));
  painter.setPen(QPen(marked ? theme_.accent : QColor(0, 0, 0, underMouse() ? 120 : 70), 1));
  painter.drawEllipse(centre, radius, radius);
  if (!marked) return;
  painter.setPen(QPen(
      contrastRatio(theme_.accent, Qt::white) >= 3 ? theme_.accent : QColor(0x1c, 0x1c, 0x1e), 3));
  painter.drawEllipse(centre, radius - 1.5, radius - 1.5);
}

void CustomSlider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintTrack(painter);
  paintThumb(painter);
}

}  // namespace kifo
