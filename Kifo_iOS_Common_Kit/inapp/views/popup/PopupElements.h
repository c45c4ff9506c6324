#pragma once

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupTheme.h"

class QWidget;

namespace kifo {

class CustomSlider;
class DashedLabel;
class FreeTextField;
class PageIndicator;
class PopupButton;
class PopupCarousel;
class PopupCloseButton;
class PopupEmojiRow;
class PopupImageView;
class PopupLabel;
class PopupListView;
class PopupPanel;
class PopupScrollArea;

/// The pieces of one popup. Each has its name here as its object name; what the campaign's kind
/// does not have is null.
///
/// **Threading:** UI thread only. **Ownership:** all belong to the view.
struct PopupElements {
  PopupPanel* popupView = nullptr;         ///< The panel.
  PopupScrollArea* panelScroll = nullptr;  ///< Scrolls a panel that is taller than the window.
  QWidget* contentView = nullptr;          ///< Holds all that follows, but for the close button.
  PopupLabel* popupTitle = nullptr;
  PopupImageView* popupImageView = nullptr;
  PopupCarousel* popupImageViewList = nullptr;
  PageIndicator* pageIndicator = nullptr;
  PopupLabel* popupDescription = nullptr;
  DashedLabel* couponLabel = nullptr;
  PopupButton* copyButton = nullptr;
  PopupLabel* popupQuestion = nullptr;
  PopupListView* buttonsTableview = nullptr;
  PopupEmojiRow* emojiCollectionView = nullptr;
  PopupLabel* scoreValueLabel = nullptr;
  PopupLabel* sliderMinLabel = nullptr;
  PopupLabel* sliderMaksLabel = nullptr;
  CustomSlider* slider = nullptr;
  QWidget* fieldView = nullptr;  ///< The free-text block.
  PopupLabel* textFieldLabel = nullptr;
  FreeTextField* textField = nullptr;
  PopupLabel* textFieldCountLabel = nullptr;
  PopupButton* submitButton = nullptr;
  PopupCloseButton* closeButton = nullptr;

  /// Makes the pieces that `preferences` call for, in the order in which they are read and tabbed.
  static PopupElements build(const PopupPreferences& preferences, const PopupTheme& theme,
                             QWidget* view);
};

/// Whether the free-text block is open before anything is chosen: always for an open-ended
/// question; for a survey, emojis and a score when the campaign has a free-text question that is
/// not tied to particular choices; never for a plain popup.
bool asksForFreeText(const PopupPreferences& preferences);

/// Whether choosing may open the free-text block.
bool mayAskForFreeText(const PopupPreferences& preferences);

}  // namespace kifo
