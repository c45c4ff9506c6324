#pragma once

#include <QScrollArea>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/ScrollIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/ScrollShade.h"

namespace kifo {

/// A transparent area that scrolls its one widget up and down, with an indicator in place of a bar
/// and edges that fade where there is more.
///
/// **Threading:** UI thread only.
class PopupScrollArea : public QScrollArea {
  Q_OBJECT

 public:
  /// `still`: the host asks for reduced motion.
  PopupScrollArea(bool still, QWidget* parent);

  /// `background`: what the content seems to go on under; `ink`: the indicator's.
  void setColors(const QColor& background, const QColor& ink);

  void flashScrollIndicators() { indicator_->flash(); }
  [[nodiscard]] const ScrollIndicator* indicator() const { return indicator_; }
  [[nodiscard]] bool isScrollable() const;
  /// Down by `pixels`, up when below 0. False when it could not move at all.
  bool scrollBy(int pixels);
  /// Brings `descendant` into view with some space around it.
  void reveal(const QWidget* descendant);

 Q_SIGNALS:
  /// The vertical content offset changed; logical pixels.
  void scrollViewDidScroll(double offset);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  ScrollShade* shade_;
  ScrollIndicator* indicator_;
};

/// Scrolls the areas around `from`, the innermost first, until one of them moves.
bool scrollAround(QWidget* from, int pixels);

}  // namespace kifo
