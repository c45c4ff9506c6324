#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// Switches of the SDK that the server sends.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct Configuration {
  std::optional<std::string> id;
  bool stopAllEvents = false;  ///< Required: without it the whole answer does not decode.
  std::optional<std::int64_t>
      offlineQueueSize;  ///< How many never-tried requests may be stored; absent counts as 0.
};

template <>
struct RecordFields<Configuration> {
  static constexpr auto fields = std::tuple(
      field("id", &Configuration::id), field("stopAllEvents", &Configuration::stopAllEvents),
      field("offlineQueueSize", &Configuration::offlineQueueSize));
};

}  // namespace kifo
