#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// Where a press leads.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct AppCommunicationItemAction {
  std::optional<std::string> link;
  std::optional<std::string> type;  ///< What kind of link it is.
};

template <>
struct RecordFields<AppCommunicationItemAction> {
  static constexpr auto fields = std::tuple(field("link", &AppCommunicationItemAction::link),
                                            field("type", &AppCommunicationItemAction::type));
};

}  // namespace kifo
