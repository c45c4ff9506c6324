#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace kifo {

/// Keeps the keyboard's focus inside an overlay while it is shown, and gives it back afterwards.
///
/// **Threading:** UI thread only. **Ownership:** belongs to the overlay; holds everything else
/// weakly.
class PopupFocus : public QObject {
  Q_OBJECT

 public:
  explicit PopupFocus(QWidget* overlay);

  /// Remembers who has the focus and gives it to the overlay itself, so that what the user is
  /// typing this very moment presses nothing.
  void take();
  /// Gives the focus back to who had it, if it is still with the overlay.
  void giveBack();
  /// To the next control that the Tab key stops at, around the end; always true.
  bool step(bool forwards);

 Q_SIGNALS:
  /// A piece of the overlay has got the focus.
  void arrived(QWidget* piece);

 private:
  void moved(QWidget* from, QWidget* to);
  [[nodiscard]] bool isBelowOverlay(const QWidget* widget) const;
  [[nodiscard]] QList<QWidget*> stops() const;

  QWidget* overlay_;
  QPointer<QWidget> before_;
  QPointer<QWidget> last_;
  bool held_ = false;
};

}  // namespace kifo
