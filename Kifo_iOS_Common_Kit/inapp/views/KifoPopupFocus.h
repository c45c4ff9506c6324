#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace kifo {

class KifoPopupCard;

/// The keyboard focus of an alert: takes it, keeps it among the overlay's widgets, gives it back.
///
/// What lies above the overlay in the same window (a later alert) may have the focus. An alert that
/// goes while another lies above it leaves that one to give the focus back in its stead.
///
/// **Threading:** UI thread only.
class KifoPopupFocus : public QObject {
  Q_OBJECT
 public:
  KifoPopupFocus(QWidget* overlay, const KifoPopupCard* card);

  /// Remembers who has the focus and gives it to `first`.
  void take(QWidget* first);
  /// Lets go, and returns the focus to whom it was taken from, if that one still wants it.
  void giveBack();
  /// Moves on to the next or previous widget, round and round.
  bool step(bool forward);
  /// The user has put the focus somewhere, or has typed.
  void engage();
  /// Whether the user works inside with the keyboard, in a window that is active.
  [[nodiscard]] bool isEngaged() const;

 Q_SIGNALS:
  void moved(QWidget* to);
  void engagementChanged();

 private:
  void changed(QWidget* now);
  [[nodiscard]] bool isInside(const QWidget* widget) const;
  [[nodiscard]] bool isAbove(const QWidget* widget) const;
  [[nodiscard]] QList<QWidget*> stops() const;
  void bequeath();

  QWidget* overlay_;
  QPointer<const KifoPopupCard> card_;
  QPointer<QWidget> before_;
  QPointer<QWidget> last_;
  bool holding_ = false;
  bool moving_ = false;  ///< We are moving the focus ourselves.
  bool engaged_ = false;
};

}  // namespace kifo
