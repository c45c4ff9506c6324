#pragma once

#include <utility>

#include <QColor>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanTracker.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupScrollArea.h"

/// What all controls of popups and alerts have in common, whichever Qt class gives them their role.
///
/// **Threading:** UI thread only.
namespace kifo {

/// `Base` (QPushButton, QRadioButton) with a focus ring only for those who use the keyboard, Enter
/// beside Space, arrows left to the surrounding list, and the whole rectangle as its target
/// whatever the host's style makes of it. A finger that is drawn along it scrolls what it lies in
/// and presses nothing.
template <class Base>
class PopupControl : public Base {
 public:
  explicit PopupControl(QWidget* parent) : Base(parent) {
    this->setAttribute(Qt::WA_Hover);
    this->setFocusPolicy(Qt::StrongFocus);
    this->setCursor(Qt::PointingHandCursor);
    this->setMinimumSize(0, 0);
  }

  [[nodiscard]] bool showsFocus() const { return this->hasFocus() && byKeyboard_; }
  [[nodiscard]] Touch touch() const {
    return {this->isDown(), this->underMouse() && this->isEnabled(), showsFocus()};
  }
  [[nodiscard]] QSize sizeHint() const override { return {44, 44}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }

 protected:
  [[nodiscard]] bool hitButton(const QPoint& position) const override {
    return this->rect().contains(position);
  }

  void focusInEvent(QFocusEvent* event) override {
    if (event->reason() != Qt::ActiveWindowFocusReason) {
      byKeyboard_ = event->reason() != Qt::MouseFocusReason;
    } else if (this->window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
      byKeyboard_ = true;
    }
    Base::focusInEvent(event);
  }

  void mousePressEvent(QMouseEvent* event) override {
    pan_.press(event->globalPosition().toPoint());
    Base::mousePressEvent(event);
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    const bool pressed = event->buttons().testFlag(Qt::LeftButton);
    const int travelled = pressed ? pan_.move(event->globalPosition().toPoint()) : 0;
    if (travelled != 0 && scrollAround(this, travelled)) dragged_ = true;
    if (dragged_ && pressed) return this->setDown(false);
    Base::mouseMoveEvent(event);
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    if (std::exchange(dragged_, false)) this->setDown(false);
    Base::mouseReleaseEvent(event);
  }

  void keyPressEvent(QKeyEvent* event) override {
    switch (event->key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
        if (!event->isAutoRepeat()) this->click();
        return;
      case Qt::Key_Up:
      case Qt::Key_Down:
      case Qt::Key_Left:
      case Qt::Key_Right:
      case Qt::Key_Escape:
        event->ignore();
        return;
      default:
        Base::keyPressEvent(event);
    }
  }

 private:
  PanTracker pan_;
  bool dragged_ = false;  ///< The press has become a drag.
  bool byKeyboard_ = false;
};

}  // namespace kifo
