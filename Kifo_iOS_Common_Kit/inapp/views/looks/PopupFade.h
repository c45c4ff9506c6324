#pragma once

#include <chrono>
#include <functional>

#include <QVariantAnimation>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The cross-fade of a popup's window, in and out. Either way it goes on from where it is.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its window.
class KIFO_SHARED PopupFade : public QObject {
  Q_OBJECT

 public:
  /// A duration of zero arrives at once, as does a window that is not seen by then.
  PopupFade(std::chrono::milliseconds duration, std::function<bool()> isSeen, QObject* window);

  /// `opacity`: 0 to 1. `ended` comes later, from the event loop.
  void fadeTo(double opacity);
  [[nodiscard]] double opacity() const { return opacity_; }

 Q_SIGNALS:
  /// Before anything of it can be seen.
  void began();
  void changed(double opacity);
  void ended();

 private:
  void set(double opacity);

  const std::function<bool()> isSeen_;
  std::chrono::milliseconds duration_;
  QVariantAnimation animation_{this};
  double opacity_ = 0;
};

}  // namespace kifo
