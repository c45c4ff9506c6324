#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// A campaign's title.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct AppCommunicationItemHeader {
  std::optional<std::string> text;
  std::optional<std::string> color;  ///< Hex text.
};

template <>
struct RecordFields<AppCommunicationItemHeader> {
  static constexpr auto fields = std::tuple(field("text", &AppCommunicationItemHeader::text),
                                            field("color", &AppCommunicationItemHeader::color));
};

}  // namespace kifo
