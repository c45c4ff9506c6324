#pragma once

#include <QPointer>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/ScreenType.h"

namespace kifo {

class AlertAnimator;
class AlertCard;
class AlertFocus;

/// Covers the host's window while an alert is shown: dims it, swallows its input, keeps the card in
/// its place and says what the user does beside the card.
///
/// **Threading:** UI thread only. **Ownership:** a child of the window. The card is the alert's;
/// the overlay lets go of it when it dies with the window.
class AlertOverlay : public QWidget {
  Q_OBJECT
 public:
  /// `host`: a window; null gives the overlay a window of its own, over whatever has the focus.
  AlertOverlay(QWidget* host, AlertCard* card, AlertAnimator* animator);
  ~AlertOverlay() override;

  /// `dimming`: 0 to 1.
  void open(double dimming, ScreenType type, QWidget* firstFocus);
  /// Puts the card where it belongs: after the window or the card has changed.
  void place();
  /// The part of the window that a keyboard on the screen covers; empty for none.
  void setKeyboard(const QRect& keyboard);
  /// Removes the overlay, without the card, which is left without a parent.
  void dismantle();
  [[nodiscard]] AlertFocus& focus() const { return *focus_; }

 Q_SIGNALS:
  /// A press and release beside the buttons and fields; `beside` tells whether beside the card too.
  void tapped(bool beside);
  void escapePressed();
  void enterPressed();
  /// The window went away and takes the overlay with it.
  void windowGone();

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void coverWindow();
  void moveCard();
  void paintShadow(QPainter& painter) const;
  void releaseCard();
  [[nodiscard]] QRect room() const;
  [[nodiscard]] bool isOnCard(const QPointF& position) const;

  QPointer<AlertCard> card_;
  QPointer<AlertAnimator> animator_;
  AlertFocus* focus_;
  QRect keyboard_;
  double dimming_ = 0;
  ScreenType type_ = ScreenType::popup;
  bool placing_ = false;
  bool pressedBeside_ = false;
};

}  // namespace kifo
