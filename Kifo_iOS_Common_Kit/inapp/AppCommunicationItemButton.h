#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItemAction.h"

namespace kifo {

/// Every option that a user can choose: popup button, survey choice, emoji, submit button, push
/// button.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct AppCommunicationItemButton {
  std::optional<std::string> id;
  std::optional<std::string> text;
  std::optional<std::string> color;      ///< Background, hex text.
  std::optional<std::string> textColor;  ///< Hex text.
  std::shared_ptr<AppCommunicationItemAction> action;
  std::optional<std::string> type;
  std::optional<bool> show;                      ///< An emoji is offered only when this is true.
  std::optional<std::string> imageUrl;           ///< An emoji's picture.
  std::optional<bool> freeTextQuestionCheckBox;  ///< Choosing it asks for free text.
};

template <>
struct RecordFields<AppCommunicationItemButton> {
  static constexpr auto fields = std::tuple(
      field("id", &AppCommunicationItemButton::id),
      field("text", &AppCommunicationItemButton::text),
      field("color", &AppCommunicationItemButton::color),
      field("textColor", &AppCommunicationItemButton::textColor),
      field("action", &AppCommunicationItemButton::action),
      field("type", &AppCommunicationItemButton::type),
      field("show", &AppCommunicationItemButton::show),
      field("imageUrl", &AppCommunicationItemButton::imageUrl),
      field("freeTextQuestionCheckBox", &AppCommunicationItemButton::freeTextQuestionCheckBox));
};

}  // namespace kifo
