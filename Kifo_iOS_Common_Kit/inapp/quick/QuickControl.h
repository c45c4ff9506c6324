#pragma once

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPiece.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanTracker.h"

namespace kifo {

/// A part that can be pressed and can have the focus. A finger that is drawn along it scrolls what
/// it lies in and presses nothing.
///
/// **Threading:** UI thread; painting on the render thread while the UI thread waits.
/// **Ownership:** belongs to its popup.
class QuickControl : public kifo::QuickPiece {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupControl)
  Q_PROPERTY(bool focusStop READ isFocusStop NOTIFY changed)

 public:
  explicit QuickControl(QQuickItem* parent = nullptr);

  /// Whether the Tab key stops here.
  [[nodiscard]] bool isFocusStop() const;
  /// What pressing does.
  Q_INVOKABLE void press();

 protected:
  void componentComplete() override;
  [[nodiscard]] Touch touch() const override { return touch_; }
  void setPressed(bool pressed);
  /// Whether the key meant something to the row that it was pressed in.
  bool rove(int key);

  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseUngrabEvent() override;
  void hoverEnterEvent(QHoverEvent* event) override;
  void hoverLeaveEvent(QHoverEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

  Touch touch_;

 private:
  PanTracker pan_;
  bool dragged_ = false;
  bool byKeyboard_ = false;
};

}  // namespace kifo
