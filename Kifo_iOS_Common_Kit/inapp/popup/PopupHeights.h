#pragma once

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The heights of which a popup's panel is made, in logical pixels. An element whose content needs
/// more grows beyond its height here, and the panel with it.
///
/// **Threading:** a plain value.
struct KIFO_SHARED PopupHeights {
  static constexpr double rightLeftSpace = 15;   ///< Panel inset from the screen's margins.
  static constexpr double emojiCellSize = 50;    ///< Width and height.
  static constexpr double indicatorHeight = 10;  ///< Page indicator.
  static constexpr double textFieldHeight = 36;  ///< Free-text field.
  static constexpr double textFieldLabelHeight = 36;
  static constexpr double sliderHeight = 30;
  static constexpr double scoreValueLabelHeight = 17;
  static constexpr double textFieldCountLabelHeight = 12;
  static constexpr double couponLabelHeight = 50;
  static constexpr double couponCopyButtonHeight = 40;

  double fieldViewHeight = 100;  ///< Free-text block; 0 while it is collapsed.
  double popupTitleHeight = 50;
  double imageViewHeight = 0;
  double popupDescriptionHeight = 0;
  double popupQuestionHeight = 0;
  double tableViewHeigth = 0;
  double submitButtonHeight = 0;
  double totalHeight = 0;  ///< The panel with its free-text block.
  int imagesCount = 0;
  bool isEmoji = false;
  bool isImageListAvailable = false;
  bool isPlain = false;
  bool isListCapped = false;  ///< Beyond 200 the list scrolls rather than grows.

  static PopupHeights of(const PopupState& state);

  /// The free-text block when it is open; without a question of its own it is the field alone.
  [[nodiscard]] double openFieldHeight(bool hasQuestion) const;
  /// The list's height when its rows take `rows`: as given while they fit, otherwise grown by what
  /// they need beyond that, or scrolling from its cap on.
  [[nodiscard]] int listHeightFor(int rows) const;
};

}  // namespace kifo
