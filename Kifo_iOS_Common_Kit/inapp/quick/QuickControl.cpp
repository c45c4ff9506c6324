#include "Kifo_iOS_Common_Kit/inapp/quick/QuickControl.h"

#include <QCursor>
#include <QKeyEvent>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickScroll.h"

namespace kifo {

QuickControl::QuickControl(QQuickItem* parent) : QuickPiece(parent) {
  setAcceptedMouseButtons(Qt::LeftButton);
  setAcceptHoverEvents(true);
  setKeepMouseGrab(true);
  setCursor(Qt::PointingHandCursor);
}

bool QuickControl::isFocusStop() const {
  if (!popup() || !isVisible() || !isEnabled()) return false;
  if (part() == Body) return popup()->isPressable();
  return !isOption() || row() == popup()->stopRow();
}

void QuickControl::press() {
  switch (part()) {
    case Close:
      return popup()->closeButtonAction();
    case Submit:
      return popup()->submitButtonPressed();
    case Copy:
      return popup()->isCopied() ? void() : popup()->copyButtonPressed();
    case ListRow:
    case Emoji:
      return popup()->pressRow(row());
    case Body:
      return popup()->touchesBegan();
    default:
      return;
  }
}

/// A press on the panel's body is the overlay's: it may become a drag.
void QuickControl::componentComplete() {
  QuickPiece::componentComplete();
  if (part() != Body) return;
  setAcceptedMouseButtons(Qt::NoButton);
  setAcceptHoverEvents(false);
  unsetCursor();
}

void QuickControl::setPressed(bool pressed) {
  if (pressed == touch_.isPressed) return;
  touch_.isPressed = pressed;
  update();
}

void QuickControl::mousePressEvent(QMouseEvent* event) {
  event->accept();
  pan_.press(event->globalPosition().toPoint());
  dragged_ = false;
  const QPointer<QuickControl> self(this);
  forceActiveFocus(Qt::MouseFocusReason);
  if (self) setPressed(true);
}

void QuickControl::mouseMoveEvent(QMouseEvent* event) {
  const int travelled = pan_.move(event->globalPosition().toPoint());
  if (travelled != 0 && scrollAround(this, travelled)) dragged_ = true;
  setPressed(!dragged_ && contains(event->position()));
}

void QuickControl::mouseReleaseEvent(QMouseEvent*) {
  const bool presses = touch_.isPressed && !dragged_;
  setPressed(false);
  if (presses) press();
}

/// Where this is refused, the scene drops the second tap of two in quick succession.
void QuickControl::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
}

void QuickControl::mouseUngrabEvent() {
  setPressed(false);
}

void QuickControl::hoverEnterEvent(QHoverEvent* event) {
  event->accept();
  touch_.isHovered = true;
  update();
}

void QuickControl::hoverLeaveEvent(QHoverEvent* event) {
  event->accept();
  touch_.isHovered = false;
  update();
}

/// In a group that is one question only the option focused last is a stop of the Tab key.
bool QuickControl::rove(int key) {
  const bool mirrored = parts().isMirrored();
  int next = row();
  if (key == Qt::Key_Down || key == (mirrored ? Qt::Key_Left : Qt::Key_Right)) {
    ++next;
  } else if (key == Qt::Key_Up || key == (mirrored ? Qt::Key_Right : Qt::Key_Left)) {
    --next;
  } else if (key == Qt::Key_Home) {
    next = 0;
  } else if (key == Qt::Key_End) {
    next = popup()->rows() - 1;
  } else {
    return false;
  }
  for (QQuickItem* sibling : parentItem()->childItems()) {
    auto* option = qobject_cast<QuickControl*>(sibling);
    if (option && option->part() == part() && option->row() == next) {
      option->forceActiveFocus(Qt::TabFocusReason);
      break;
    }
  }
  return true;
}

void QuickControl::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool isRow = part() == ListRow || part() == Emoji;
  if (isRow && rove(key)) return;
  const bool enters = key == Qt::Key_Return || key == Qt::Key_Enter;
  const bool presses = enters || key == Qt::Key_Space;
  if (!presses) return event->ignore();
  if (event->isAutoRepeat()) return;
  // Space presses as it is let go, as it does in any button.
  if (enters || part() == Body) return press();
  setPressed(true);
}

void QuickControl::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space || event->isAutoRepeat()) return event->ignore();
  const bool presses = touch_.isPressed;
  setPressed(false);
  if (presses) press();
}

void QuickControl::focusInEvent(QFocusEvent* event) {
  if (event->reason() != Qt::ActiveWindowFocusReason) {
    byKeyboard_ = event->reason() != Qt::MouseFocusReason;
  }
  touch_.hasKeyboard = byKeyboard_;
  if (part() == ListRow || part() == Emoji) popup()->setStopRow(row());
  update();
}

void QuickControl::focusOutEvent(QFocusEvent*) {
  touch_.hasKeyboard = false;
  setPressed(false);
  update();
}

}  // namespace kifo
