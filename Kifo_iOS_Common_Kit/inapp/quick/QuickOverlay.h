#pragma once

#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QRectF>

namespace kifo {

/// What a popup and an alert in a Qt Quick scene have in common: it covers the window and follows
/// its size, dims it, keeps mouse, touch, hover, keys and the host's shortcuts to itself, and holds
/// the keyboard focus while it is open. It lies above everything in the scene, open popups and
/// drawers of the host's included; of several overlays the later one is above.
///
/// The Tab key stops at the descendants with `activeFocusOnTab`, and at those whose `focusStop`
/// property is true, in their order.
///
/// **Threading:** UI thread only. **Ownership:** once it covers a window it is a child of the
/// window's content item and goes with it; holds everything else weakly.
class QuickOverlay : public QQuickItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(Overlay)
  /// Alpha of the black over the host, 0 to 1.
  Q_PROPERTY(double dimming READ dimming WRITE setDimming NOTIFY dimmingChanged)

 public:
  explicit QuickOverlay(QQuickItem* parent = nullptr);
  ~QuickOverlay() override;

  /// Covers the content of the window and follows its size.
  void cover(QQuickWindow& window);

  [[nodiscard]] double dimming() const { return dimming_; }
  void setDimming(double alpha);

  /// What a keyboard on the screen covers of the window, empty for none: it is not dimmed and can
  /// be used. The input method's own keyboard is watched.
  void setKeyboard(const QRectF& keyboard);
  [[nodiscard]] bool contains(const QPointF& point) const override;

 Q_SIGNALS:
  void dimmingChanged();

 protected:
  /// The window has another size, or a keyboard covers another part of it.
  virtual void place() {}
  /// The application has another font or reading direction.
  virtual void remake() {}
  /// Whether the host's shortcuts on this key wait until the overlay is closed.
  [[nodiscard]] virtual bool takesKey(int key) const;
  /// A descendant has got the focus. `byUser` is false where the overlay itself put it.
  virtual void focusArrived(QQuickItem* item, bool byUser);
  /// The items that the Tab key stops at, in its order.
  [[nodiscard]] virtual QList<QQuickItem*> focusStops() const;

  // A finger, or the left mouse button, on what none of the items takes. Positions are global.
  virtual void pressed(QPointF position, QPoint global);
  virtual void moved(QPoint global);
  virtual void released();

  /// Remembers who has the focus and gives it to `first`, which may be the overlay itself.
  void takeFocus(QQuickItem* first);
  /// Stops taking input and returns the focus to the item that had it before, if that one can
  /// still have it.
  void giveFocusBack();
  /// To the next or previous stop, in a circle.
  virtual void stepFocus(bool forwards);
  [[nodiscard]] bool isInside(const QQuickItem* item) const;
  [[nodiscard]] const QRectF& keyboard() const { return keyboard_; }

  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void touchEvent(QTouchEvent* event) override;
  void hoverEnterEvent(QHoverEvent* event) override;
  void hoverMoveEvent(QHoverEvent* event) override;
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

 private:
  bool tab(const QKeyEvent& event);
  [[nodiscard]] bool isAbove(const QQuickItem* item) const;
  void focusMoved();
  void passFocusOn();

  double dimming_ = 0;
  QRectF keyboard_;
  QPointer<QQuickItem> focusBefore_;
  QPointer<QQuickItem> focusLast_;
  bool holdsFocus_ = false;
  bool movesFocus_ = false;  ///< We are moving the focus ourselves.
  int finger_ = -1;          ///< The one that counts; others are kept from the host.
};

}  // namespace kifo
