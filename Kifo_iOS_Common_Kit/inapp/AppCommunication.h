#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/inapp/BlockedEvents.h"
#include "Kifo_iOS_Common_Kit/inapp/Configuration.h"

namespace kifo {

/// The server's in-app answer.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct AppCommunication {
  std::optional<std::vector<std::shared_ptr<AppCommunicationItem>>> model;  ///< The campaigns.
  std::shared_ptr<Configuration> configuration;
  std::optional<std::vector<std::shared_ptr<BlockedEvents>>> blockedEvents;
};

template <>
struct RecordFields<AppCommunication> {
  static constexpr auto fields =
      std::tuple(field("model", &AppCommunication::model),
                 field("configuration", &AppCommunication::configuration),
                 field("blockedEvents", &AppCommunication::blockedEvents));
};

}  // namespace kifo
