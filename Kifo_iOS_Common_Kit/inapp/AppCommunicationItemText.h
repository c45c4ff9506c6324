#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// A campaign's body text.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct AppCommunicationItemText {
  std::optional<std::string> text;
  std::optional<std::string> color;    ///< Hex text.
  std::optional<std::string> bgColor;  ///< Hex text.
};

template <>
struct RecordFields<AppCommunicationItemText> {
  static constexpr auto fields = std::tuple(field("text", &AppCommunicationItemText::text),
                                            field("color", &AppCommunicationItemText::color),
                                            field("bgColor", &AppCommunicationItemText::bgColor));
};

}  // namespace kifo
