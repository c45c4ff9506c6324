#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// A campaign's question.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct AppCommunicationItemQuestion {
  std::optional<std::string> text;
  std::optional<std::string> color;  ///< Hex text.
};

template <>
struct RecordFields<AppCommunicationItemQuestion> {
  static constexpr auto fields = std::tuple(field("text", &AppCommunicationItemQuestion::text),
                                            field("color", &AppCommunicationItemQuestion::color));
};

}  // namespace kifo
