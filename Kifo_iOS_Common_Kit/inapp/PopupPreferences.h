#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/inapp/Color.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"

namespace kifo {

/// Everything that a popup's window needs to draw one campaign.
///
/// A value: copying it copies the references to the item, the buttons and the screen.
struct PopupPreferences {
  std::optional<std::string> type;  ///< The item's type text, also when it names no `PopupType`.
  std::optional<Color> titleColor;
  std::optional<std::string> title;
  std::optional<Color> detailTextColor;
  std::optional<std::string> detailText;
  std::optional<std::string> questionText;
  std::optional<Color> questionColor;
  std::optional<Color> backgroundColor;
  std::vector<std::shared_ptr<AppCommunicationItemButton>> buttons;
  std::optional<std::string> image;  ///< URL of the single picture.
  std::shared_ptr<AppCommunicationItemButton> submitButton;
  std::vector<std::shared_ptr<AppCommunicationItemButton>> choices;
  std::shared_ptr<AppCommunicationItem> appCommunicationItem;
  std::vector<std::string> images;  ///< URLs of the carousel.
  std::weak_ptr<ViewController> controller;
  std::optional<std::string> pageName;
};

}  // namespace kifo
