#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"

namespace kifo {

/// An event that must not be sent.
struct BlockedEvents {
  std::optional<std::string> name;  ///< Blocks the event of exactly this name; absent, nothing.
};

/// Switches of the SDK that the server sends.
struct Configuration {
  std::optional<std::string> id;
  bool stopAllEvents = false;  ///< Required: without it the whole answer does not decode.
  /// How many never-tried requests may be stored; absent counts as 0.
  std::optional<std::int64_t> offlineQueueSize;
};

/// The server's in-app answer.
struct AppCommunication {
  std::optional<std::vector<std::shared_ptr<AppCommunicationItem>>> model;  ///< The campaigns.
  std::shared_ptr<Configuration> configuration;
  std::optional<std::vector<std::shared_ptr<BlockedEvents>>> blockedEvents;
};

}  // namespace kifo
