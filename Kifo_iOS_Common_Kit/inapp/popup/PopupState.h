#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// One popup: the campaign that it shows, what the user has chosen so far, and what follows from
/// both. A view draws it and tells it what the user does; it knows no toolkit.
///
/// | state | how it comes | what is left |
/// |---|---|---|
/// | open | made | choose, type, move the thumb, turn pages |
/// | answering | `beginAnswer` | the host's callbacks run; no second answer |
/// | closed | the view dismisses it | nothing |
///
/// Lengths are logical pixels.
///
/// **Threading:** a plain value; a view's own lives on the UI thread.
struct KIFO_SHARED PopupState {
  /// Starts the console lines of a popup, whichever toolkit draws it.
  static constexpr std::string_view LOG_TAG = "Kifo PopUpWindow:";

  using Button = std::shared_ptr<AppCommunicationItemButton>;
  using Buttons = std::vector<Button>;

  /// From this width on the panel stays at its widest, 480.
  static constexpr double widestScreen = 550;

  // The campaign; constant once made, but for what follows from the screen's width.
  PopupPreferences preferences;
  std::weak_ptr<ViewController> controller;  ///< The host's screen; goes with every report.
  std::optional<std::string> pageName;       ///< Goes with every report.
  /// As the close path reads it. This field and its spelling are kept for compatibility.
  std::shared_ptr<AppCommunicationItem> appCommuncationItem;
  /// As submit and body touch read it.
  std::shared_ptr<AppCommunicationItem> appCommunicationItem;
  PopupRequest::ButtonCallback actionItem;
  PopupRequest::ButtonCallback submitButtonItem;
  PopupRequest::ButtonCallback actionBodyItem;
  PopupType popupType = PopupType::popup;  ///< Never score or openEnded: both run as emoji.
  std::optional<PopupType> layoutKind;     ///< The kind whose rules lay the panel out.
  double cellHeight = 50;
  double popupTitleHeight = 50;
  double popupDescriptionHeight = 50;
  double popupQuestionHeight = 0;
  double submitButtonHeight = 50;
  double imageViewHeight = 200;  ///< Follows the screen's width.
  /// Height of the list of buttons or choices. The spelling is kept for compatibility.
  double tableViewHeigth = 0;
  Buttons buttons;                  ///< Of a plain popup.
  Button submitButton;              ///< Kept for compatibility, never filled.
  Buttons choices;                  ///< Of a survey, or the emojis.
  std::vector<std::string> images;  ///< URLs of the carousel.
  std::optional<bool> defaultFreeTextCheckBox;

  // What the user has done.
  Button selectActionItem;             ///< The chosen choice or emoji.
  std::optional<int> currentSelected;  ///< Row of the emoji picked last; none when not found.
  int currentIndex = 0;                ///< Carousel page shown.
  float sliderValue = 0;               ///< The score; its whole part counts.
  std::string freeText;
  bool isFreeTextOpen = false;
  bool isKeyboardSizeAdded = false;  ///< The view is lifted for the on-screen keyboard.
  bool isAnswering = false;          ///< An answer has been given, or the host is being asked.

  /// The state of a popup that is about to show `request` on a screen `screenWidth` wide.
  static PopupState of(const PopupRequest& request, double screenWidth);

  /// The panel's inset from both edges of a screen, together: 62 below a width of 400, 70 from
  /// there.
  static double margins(double screenWidth);
  void setScreenWidth(double screenWidth);

  /// The rows of the list: the buttons of a plain popup, the choices of any other.
  [[nodiscard]] const Buttons& options() const;
  /// The first choice whose id is that of `button`; two absent ids are equal.
  [[nodiscard]] std::optional<int> rowOf(const AppCommunicationItemButton& button) const;
  /// The row that is marked as chosen.
  [[nodiscard]] std::optional<int> chosenRow() const;
  /// Chooses an option of a survey or an emoji; there is no way back to none. Opens or closes the
  /// free-text field where it is tied to particular choices.
  void select(const Button& button);

  /// Whether submitting would send nothing yet, because nothing is chosen.
  [[nodiscard]] bool waitsForChoice() const;
  /// Whether choosing may open the free-text field, or whether it is open from the start.
  [[nodiscard]] bool mayAskForFreeText() const;
  /// The whole score, as it is shown and sent. A value that is no integer is fatal.
  [[nodiscard]] std::int64_t score() const;
  /// The page after the one shown; from the last one back to the first.
  [[nodiscard]] int nextPage() const;

  /// What submitting sends, in order: the choice, if there is one, and then whatever the item's own
  /// type asks for. Needs an item.
  [[nodiscard]] std::vector<InAppAnswer> answers() const;
  /// The button that a touch of the body stands for; null when the item has no action.
  [[nodiscard]] Button bodyButton() const;
};

}  // namespace kifo
