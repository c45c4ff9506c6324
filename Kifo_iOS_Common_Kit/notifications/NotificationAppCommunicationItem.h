#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"

namespace kifo {

/// The campaign that a push carries: the JSON text under "data" in its user info.
struct NotificationAppCommunicationItem {
  std::optional<std::string> type;
  std::optional<std::string> uuid;  ///< Its identity; events carry it as "communication_name".
  std::optional<std::string> code;
  std::optional<std::string> actorId;    ///< The user whom the push was sent to.
  std::optional<std::string> pushToken;  ///< The device that the push was sent to.
  std::optional<std::string> name;
  std::optional<std::string> triggeringEventName;
  std::optional<std::string> image;  ///< URL.
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemButton>>> buttons;
  std::optional<std::string> applicationName;
  std::optional<std::string> scenario;
  std::shared_ptr<AppCommunicationItemAction> action;  ///< What a tap on the push's body leads to.
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemImage>>> images;  ///< Carousel.
  std::optional<bool> sliderSupport;  ///< Whether the images form a carousel.
};

}  // namespace kifo
