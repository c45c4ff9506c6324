#include "Kifo_iOS_Common_Kit/inapp/quick/QuickSlider.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include <QKeyEvent>

namespace kifo {
namespace {

constexpr std::int64_t kLimit = 1 << 30;  ///< Whole as an int and as a float.
constexpr int kPages = 10;                ///< Page keys cross the range in this many steps.
constexpr int kGlideMilliseconds = 140;

}  // namespace

QuickSlider::QuickSlider(QQuickItem* parent) : QuickControl(parent) {
  glide_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&glide_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { moveTo(value.toFloat()); });
}

void QuickSlider::componentComplete() {
  QuickControl::componentComplete();
  if (!popup()) return;
  const auto& item = popup()->state().appCommunicationItem;
  const auto whole = [](std::optional<std::int64_t> value) {
    return static_cast<int>(std::clamp<std::int64_t>(value.value_or(0), -kLimit, kLimit));
  };
  look_.minimum = item ? whole(item->minScore) : 0;
  look_.maximum = std::max(item ? whole(item->maxScore) : 0, look_.minimum);
  look_.position = static_cast<float>(look_.minimum);
  glide_.setDuration(parts().theme().milliseconds(std::chrono::milliseconds(kGlideMilliseconds)));
}

void QuickSlider::paint(QPainter* painter) {
  ScoreLook look = look_;
  look.isMirrored = parts().isMirrored();
  look.paint(*painter, parts().theme(), boundingRect(), touch());
}

void QuickSlider::setValue(double value) {
  glide_.stop();
  moveTo(static_cast<float>(std::trunc(value)));
}

void QuickSlider::moveTo(float position) {
  position =
      std::clamp(position, static_cast<float>(look_.minimum), static_cast<float>(look_.maximum));
  if (position == look_.position) return;
  look_.position = position;
  look_.isTouched = true;
  popup()->setScore(position);
  update();
  Q_EMIT valueChanged();
}

void QuickSlider::mousePressEvent(QMouseEvent* event) {
  event->accept();
  forceActiveFocus(Qt::MouseFocusReason);
  glide_.stop();
  look_.isTouched = true;
  touch_.isPressed = true;
  popup()->holdScore(true);
  mouseMoveEvent(event);
  update();
}

void QuickSlider::mouseMoveEvent(QMouseEvent* event) {
  ScoreLook look = look_;
  look.isMirrored = parts().isMirrored();
  if (touch_.isPressed) moveTo(look.positionAt(event->position().x(), width()));
}

/// The thumb glides to the whole score that is shown, which is the one that is sent.
void QuickSlider::mouseReleaseEvent(QMouseEvent*) {
  if (!std::exchange(touch_.isPressed, false)) return;
  popup()->holdScore(false);
  update();
  if (glide_.duration() == 0) return moveTo(static_cast<float>(value()));
  glide_.setStartValue(look_.position);
  glide_.setEndValue(static_cast<float>(value()));
  glide_.start();
}

/// A wheel that only passes by scrolls the panel and leaves the score alone.
void QuickSlider::wheelEvent(QWheelEvent* event) {
  if (!hasActiveFocus()) return event->ignore();
  setValue(value() + (event->angleDelta().y() > 0 ? 1 : -1));
}

void QuickSlider::keyPressEvent(QKeyEvent* event) {
  const double page = std::max(1.0, std::floor((maximumValue() - minimumValue()) / kPages));
  const double forwards = parts().isMirrored() ? -1 : 1;
  touch_.hasKeyboard = true;
  update();
  switch (event->key()) {
    case Qt::Key_Right:
      return setValue(value() + forwards);
    case Qt::Key_Left:
      return setValue(value() - forwards);
    case Qt::Key_Up:
      return setValue(value() + 1);
    case Qt::Key_Down:
      return setValue(value() - 1);
    case Qt::Key_PageUp:
      return setValue(value() + page);
    case Qt::Key_PageDown:
      return setValue(value() - page);
    case Qt::Key_Home:
      return setValue(minimumValue());
    case Qt::Key_End:
      return setValue(maximumValue());
    default:
      event->ignore();
  }
}

}  // namespace kifo
