#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// An event that must not be sent.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct BlockedEvents {
  std::optional<std::string> name;  ///< Blocks the event of exactly this name; absent, nothing.
};

template <>
struct RecordFields<BlockedEvents> {
  static constexpr auto fields = std::tuple(field("name", &BlockedEvents::name));
};

}  // namespace kifo
