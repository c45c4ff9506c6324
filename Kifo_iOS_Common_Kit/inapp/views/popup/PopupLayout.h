#pragma once

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupGeometry.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupElements.h"

namespace kifo {

/// Measures the pieces of a panel and puts them in their places.
///
/// **Threading:** UI thread only.
class PopupLayout : public PopupMeasures {
 public:
  explicit PopupLayout(const PopupElements& elements) : e_(elements) {}

  /// Arranges the pieces and returns their boxes.
  PopupBoxes arrange(const PopupHeights& heights, const PopupArrangement& how) const;

  [[nodiscard]] bool has(PopupPiece piece) const override;
  [[nodiscard]] bool isEmpty(PopupPiece piece) const override;
  [[nodiscard]] int heightFor(PopupPiece piece, int width) const override;
  [[nodiscard]] int naturalWidth(PopupPiece piece) const override;
  void shrinkToFit(PopupPiece piece, int width, int leastPixels) const override;

 private:
  [[nodiscard]] QWidget* widgetOf(PopupPiece piece) const;
  [[nodiscard]] TextLabel* labelOf(PopupPiece piece) const;

  const PopupElements& e_;
};

}  // namespace kifo
