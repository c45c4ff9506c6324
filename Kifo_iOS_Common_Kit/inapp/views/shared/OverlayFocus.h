#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace kifo {

/// The keyboard focus of an overlay: takes it, keeps it among the overlay's widgets, gives it back.
///
/// What lies above the overlay in the same window, such as a later alert, may have the focus. An
/// overlay that goes while another lies above it leaves that one to give the focus back in its
/// stead.
///
/// **Threading:** UI thread only. **Ownership:** belongs to the overlay; holds everything else
/// weakly.
class OverlayFocus : public QObject {
  Q_OBJECT

 public:
  explicit OverlayFocus(QWidget* overlay);

  /// Remembers who has the focus and gives it to `first`. The overlay itself is a good choice where
  /// what the user is typing this very moment must press nothing.
  void take(QWidget* first);
  /// Lets go, and returns the focus to whom it was taken from, if that one can still have it.
  void giveBack();
  /// To the next or previous widget that the Tab key stops at, round and round; always true.
  bool step(bool forwards);

 Q_SIGNALS:
  /// A widget of the overlay has got the focus. Where the overlay itself put it, and where a window
  /// that becomes active again returns it to, that was not by the user.
  void arrived(QWidget* widget, bool byUser);

 protected:
  /// The widgets that the Tab key stops at, in its order.
  [[nodiscard]] virtual QList<QWidget*> stops() const;
  [[nodiscard]] bool isStop(const QWidget* widget) const;
  [[nodiscard]] QWidget* overlay() const { return overlay_; }

 private:
  void changed(QWidget* now);
  void bequeath();
  [[nodiscard]] bool isInside(const QWidget* widget) const;
  [[nodiscard]] bool isAbove(const QWidget* widget) const;

  QWidget* overlay_;
  QPointer<QWidget> before_;
  QPointer<QWidget> last_;
  bool holding_ = false;
  bool moving_ = false;  ///< We are moving the focus ourselves.
};

}  // namespace kifo
