#pragma once

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"

class QWidget;

namespace kifo {

class CloseButton;
class CustomSlider;
class DashedLabel;
class FreeTextField;
class PageIndicator;
class PopupButton;
class PopupCarousel;
class PopupEmojiRow;
class PopupImageView;
class PopupListView;
class PopupPanel;
class PopupScrollArea;
class TextLabel;

/// The pieces of one popup. Each has its name here as its object name; what the campaign's kind
/// does not have is null.
///
/// **Threading:** UI thread only. **Ownership:** all belong to the view.
struct PopupElements {
  PopupPanel* popupView = nullptr;         ///< The panel.
  PopupScrollArea* panelScroll = nullptr;  ///< Scrolls a panel that is taller than the window.
  QWidget* contentView = nullptr;          ///< Holds all that follows, but for the close button.
  TextLabel* popupTitle = nullptr;
  PopupImageView* popupImageView = nullptr;
  PopupCarousel* popupImageViewList = nullptr;
  PageIndicator* pageIndicator = nullptr;
  TextLabel* popupDescription = nullptr;
  DashedLabel* couponLabel = nullptr;
  PopupButton* copyButton = nullptr;
  TextLabel* popupQuestion = nullptr;
  PopupListView* buttonsTableview = nullptr;
  PopupEmojiRow* emojiCollectionView = nullptr;
  TextLabel* scoreValueLabel = nullptr;
  TextLabel* sliderMinLabel = nullptr;
  TextLabel* sliderMaksLabel = nullptr;  ///< The spelling is kept for compatibility.
  CustomSlider* slider = nullptr;
  QWidget* fieldView = nullptr;  ///< The free-text block.
  TextLabel* textFieldLabel = nullptr;
  FreeTextField* textField = nullptr;
  TextLabel* textFieldCountLabel = nullptr;
  PopupButton* submitButton = nullptr;
  CloseButton* closeButton = nullptr;

  /// Makes the pieces that the campaign calls for, in the order in which they are read and tabbed.
  static PopupElements build(const PopupState& state, const PopupContent& content,
                             const PopupTheme& theme, QWidget* view);
};

}  // namespace kifo
