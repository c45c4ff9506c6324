#pragma once

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/ScreenType.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Overlay.h"

namespace kifo {

class AlertAnimator;
class AlertCard;

/// Covers the host's window while an alert is shown, keeps the card in its place and says what the
/// user does beside the card.
///
/// **Threading:** UI thread only. **Ownership:** a child of the window. The card is the alert's;
/// the overlay releases it when it is destroyed with the window.
class AlertOverlay : public Overlay {
  Q_OBJECT
 public:
  /// The window to show an alert over: that of `wished`; else the modal dialog that is open, for no
  /// other window has input then; else the active window; else the last one that is visible; null
  /// when there is none.
  static QWidget* hostFor(QWidget* wished);

  /// `host`: a window; null gives the overlay a window of its own, over whatever has the focus.
  AlertOverlay(QWidget* host, AlertCard* card, AlertAnimator* animator);
  ~AlertOverlay() override;

  /// `dimming`: 0 to 1.
  void open(double dimming, ScreenType type, QWidget* firstFocus);
  /// Puts the card where it belongs: after the window or the card has changed.
  void place() override;
  /// The part of the window that a keyboard on the screen covers; empty for none.
  void setKeyboard(const QRect& keyboard);
  /// Gives the focus back: the alert is closing.
  void returnFocus();
  /// Removes the overlay, without the card, which is left without a parent.
  void dismantle();
  /// The user has put the focus somewhere, or has typed.
  void engage();
  /// Whether the user works inside with the keyboard, in a window that is active.
  [[nodiscard]] bool isEngaged() const { return engaged_ && isActiveWindow(); }

 Q_SIGNALS:
  /// A press and release beside the buttons and fields; `beside` tells whether beside the card too.
  void tapped(bool beside);
  void escapePressed();
  void enterPressed();
  void engagementChanged();
  /// The window went away and takes the overlay with it.
  void windowGone();

 protected:
  void focusArrived(QWidget* widget, bool byUser) override;
  [[nodiscard]] QList<QWidget*> focusStops() const override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void coverWindow();
  void moveCard();
  void releaseCard();
  [[nodiscard]] QRect available() const;
  [[nodiscard]] bool isOnCard(const QPointF& position) const;

  QPointer<AlertCard> card_;
  QPointer<AlertAnimator> animator_;
  QRect keyboard_;
  double fullDimming_ = 0;
  ScreenType type_ = ScreenType::popup;
  bool placing_ = false;
  bool pressedBeside_ = false;
  bool engaged_ = false;
};

}  // namespace kifo
