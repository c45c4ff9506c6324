#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"
#include "Kifo_iOS_Common_Kit/ports/NotificationCentre.h"

namespace kifo {

/// A notification on its way to the desktop, or on it.
///
/// **Threading:** a plain value.
struct DesktopNotification {
  std::string identifier;  ///< The host's; one that is shown is replaced by the next of the same.
  std::shared_ptr<const NotificationContent> content;  ///< Keeps the image's file.
  std::vector<NotificationAction> actions;             ///< Its category's when it was handed over.
  int attempts = 0;  ///< How often the service was asked to show it.
};

}  // namespace kifo
