#pragma once

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupHeights.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupElements.h"

namespace kifo {

/// Puts the pieces of a panel in their places, one under the other. Every piece has its height of
/// `PopupHeights`, or as much more as its content needs.
///
/// **Threading:** UI thread only.
class PopupLayout {
 public:
  /// `keepsFreeTextRoom`: the panel stays as high while its free-text block is closed.
  PopupLayout(const PopupElements& elements, const PopupHeights& heights, bool keepsFreeTextRoom)
      : e_(elements), h_(heights), keepsFreeTextRoom_(keepsFreeTextRoom) {}

  /// Arranges for a panel `width` wide whose free-text block is `openness` open, 0 to 1, and
  /// returns the panel's height: the campaign's total, less the block's as far as it is closed, or
  /// what the pieces need when that is more. The submit button stands at the bottom.
  int arrange(int width, double openness);

 private:
  struct Cursor {
    int width;
    int y = 0;
  };

  void title(Cursor& at) const;
  void pictures(Cursor& at) const;
  void coupon(Cursor& at) const;
  void body(Cursor& at) const;
  void score(Cursor& at) const;
  int freeText(int width) const;

  const PopupElements& e_;
  const PopupHeights h_;
  const bool keepsFreeTextRoom_;
};

}  // namespace kifo
