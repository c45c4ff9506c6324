#pragma once

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickControl.h"

namespace kifo {

/// The campaign's pictures side by side, of which one is seen. Turned by swiping and by arrow keys.
///
/// **Threading:** UI thread; painting on the render thread while the UI thread waits.
/// **Ownership:** belongs to its popup.
class QuickCarousel : public kifo::QuickControl {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupCarousel)

 public:
  using QuickControl::QuickControl;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  double swipeStart_ = 0;
  double swipeOffset_ = 0;
  bool swiping_ = false;
};

}  // namespace kifo
