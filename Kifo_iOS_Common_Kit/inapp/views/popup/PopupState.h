#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// What a popup's window knows about the campaign that it shows and about what the user chose.
/// Lengths are logical pixels.
///
/// **Threading:** a plain value; the window's own lives on the UI thread.
struct KIFO_EXPORT PopupState {
  using Buttons = std::vector<std::shared_ptr<AppCommunicationItemButton>>;

  /// From this width on the panel stays at its widest, 480.
  static constexpr double widestScreen = 550;

  std::optional<int>
      currentSelected;  ///< Row of the emoji picked last; none when it was not found.
  std::weak_ptr<ViewController> controller;  ///< The host's screen; goes with every report.
  std::optional<std::string> pageName;       ///< Goes with every report.
  std::shared_ptr<AppCommunicationItem>
      appCommuncationItem;  ///< The item as the close path reads it.
  PopupRequest::ButtonCallback actionItem;
  PopupRequest::ButtonCallback submitButtonItem;
  PopupRequest::ButtonCallback actionBodyItem;
  PopupType popupType = PopupType::popup;  ///< Never score or openEnded: both run as emoji.
  double cellHeight = 50;
  double popupTitleHeight = 50;
  double popupDescriptionHeight = 50;
  double popupQuestionHeight = 0;
  double submitButtonHeight = 50;
  double imageViewHeight = 200;
  double tableViewHeigth = 0;  ///< Height of the list of buttons or choices.
  std::shared_ptr<AppCommunicationItem> appCommunicationItem;  ///< Read by submit and body touch.
  Buttons buttons;
  std::shared_ptr<AppCommunicationItemButton> submitButton;  ///< Kept, never filled.
  Buttons choices;
  std::vector<std::string> images;                               ///< URLs of the carousel.
  std::shared_ptr<AppCommunicationItemButton> selectActionItem;  ///< The chosen choice or emoji.
  int currentIndex = 0;                                          ///< Carousel page shown.
  bool isKeyboardSizeAdded = false;  ///< The view is lifted for the on-screen keyboard.
  std::optional<bool> defaultFreeTextCheckBox;

  /// The fields of a window that is about to show `request` on a screen `screenWidth` wide.
  static PopupState from(const PopupRequest& request, double screenWidth);

  /// The panel's inset from both edges of a screen, together: 62 below a width of 400, 70 from
  /// there.
  static double margins(double screenWidth);

  /// 0 when there is no picture; otherwise half the panel's width.
  static double imageHeight(const PopupPreferences& preferences, double screenWidth);

  /// The first choice whose id is that of `button`; two absent ids are equal.
  [[nodiscard]] std::optional<int> rowOf(const AppCommunicationItemButton& button) const;
};

}  // namespace kifo
