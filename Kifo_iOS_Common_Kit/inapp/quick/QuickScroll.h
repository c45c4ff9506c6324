#pragma once

#include <algorithm>

#include <QVariantAnimation>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPiece.h"

namespace kifo {

/// A part that shows a stretch of its content and scrolls it up and down.
///
/// **Threading:** UI thread; painting on the render thread while the UI thread waits.
/// **Ownership:** belongs to its popup.
class QuickScroll : public kifo::QuickPiece {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupScroll)
  Q_PROPERTY(double contentY READ contentY NOTIFY scrolled)
  Q_PROPERTY(double contentHeight READ contentHeight NOTIFY scrolled)

 public:
  explicit QuickScroll(QQuickItem* parent = nullptr);

  [[nodiscard]] double contentY() const { return contentY_; }
  [[nodiscard]] double contentHeight() const;
  [[nodiscard]] double mostY() const { return std::max(contentHeight() - height(), 0.0); }
  /// How visible the indicator is, 0 to 1.
  [[nodiscard]] double strength() const;
  [[nodiscard]] bool wasScrolled() const { return wasScrolled_; }
  /// Down by `pixels`, up when below 0. False when it could not move at all.
  bool scrollBy(double pixels);
  /// Brings `descendant` into view with some space around it.
  void reveal(const QQuickItem& descendant);
  void flash();

 Q_SIGNALS:
  void scrolled();

 protected:
  void componentComplete() override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  QVariantAnimation fade_;
  double contentY_ = 0;
  bool wasScrolled_ = false;
};

/// Scrolls the areas around `from`, the innermost first, until one of them moves.
bool scrollAround(QQuickItem* from, double pixels);

}  // namespace kifo
