#pragma once

#include <QPointer>
#include <QWidget>

namespace kifo {

/// What a popup and an alert have in common: it covers the host's window and follows its size, dims
/// it, keeps its input to itself, and holds the keyboard focus while it is open.
///
/// What lies above the overlay in the same window, such as a later alert, may have the focus. An
/// overlay that goes while another lies above it leaves that one to give the focus back in its
/// stead.
///
/// **Threading:** UI thread only. **Ownership:** a child of the host's window; holds everything
/// else weakly.
class Overlay : public QWidget {
  Q_OBJECT

 public:
  /// `host`: a window; null makes the overlay a translucent window of its own, of `type`.
  Overlay(QWidget* host, Qt::WindowFlags type);
  ~Overlay() override;

  /// Black of this alpha over the host, 0 to 1.
  void setDimming(double alpha);

 protected:
  /// The overlay has another size or another reading direction.
  virtual void place() = 0;
  /// Whether the host's shortcuts on this key wait until the overlay is closed.
  [[nodiscard]] virtual bool takesKey(int key) const;
  /// A widget of the overlay has got the focus. `byUser` is false where the overlay itself put it,
  /// and where a window that becomes active again returns it to.
  virtual void focusArrived(QWidget* widget, bool byUser) = 0;
  /// The widgets that the Tab key stops at, in its order.
  [[nodiscard]] virtual QList<QWidget*> focusStops() const;
  [[nodiscard]] bool isFocusStop(const QWidget* widget) const;

  /// Takes the size of the host's window; without one, does nothing.
  void coverHost();
  /// Remembers who has the focus and gives it to `first`. The overlay itself is a good choice where
  /// what the user is typing this very moment must press nothing.
  void takeFocus(QWidget* first);
  /// Returns the focus to the widget that had it before, if that one can still have it.
  void giveFocusBack();
  /// To the next or previous stop, in a circle.
  void stepFocus(bool forwards);

  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void focusChanged(QWidget* before, QWidget* now);
  void passFocusOn();
  [[nodiscard]] bool isInside(const QWidget* widget) const;
  [[nodiscard]] bool isAbove(const QWidget* widget) const;

  double dimming_ = 0;
  QPointer<QWidget> focusBefore_;
  QPointer<QWidget> focusLast_;
  bool holdsFocus_ = false;
  bool movesFocus_ = false;  ///< We are moving the focus ourselves.
};

}  // namespace kifo
