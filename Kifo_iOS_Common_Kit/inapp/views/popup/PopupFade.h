#pragma once

#include <chrono>

#include <QVariantAnimation>

class QWidget;

namespace kifo {

/// The cross-fade of a popup's window, in and out. Either way it goes on from where it is.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its window.
class PopupFade : public QObject {
  Q_OBJECT

 public:
  /// A duration of zero arrives at once, as does a window that is not seen.
  PopupFade(std::chrono::milliseconds duration, QWidget* window);

  /// `opacity`: 0 to 1. `ended` comes later, from the event loop.
  void fadeTo(double opacity);
  [[nodiscard]] double opacity() const { return opacity_; }

 Q_SIGNALS:
  /// Is under way: nothing of it has been seen yet.
  void began();
  void changed(double opacity);
  void ended();

 private:
  void set(double opacity);

  QWidget* window_;
  std::chrono::milliseconds duration_;
  QVariantAnimation animation_{this};
  double opacity_ = 0;
};

}  // namespace kifo
