#pragma once

#include <QObject>
#include <QRectF>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The on-screen keyboard below a popup: the system's own is followed, and the view is lifted by
/// half of its height, once, although two signals report it. Kept for compatibility.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its window.
class KIFO_SHARED PopupKeyboard : public QObject {
  Q_OBJECT

 public:
  explicit PopupKeyboard(QObject* window);

  /// An empty rectangle is ignored, and so is a second keyboard.
  void show(const QRectF& keyboard);
  void hide();

  /// Logical pixels; 0 without a keyboard.
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] int lift() const { return height_ / 2; }

 Q_SIGNALS:
  void moved();

 private:
  void follow();

  int height_ = 0;
};

}  // namespace kifo
