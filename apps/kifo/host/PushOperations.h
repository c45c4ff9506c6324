#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"
#include "apps/kifo/host/Output.h"

namespace kifo::tool {

/// Callbacks of the notification manager that are written as lines.
NotificationManager::ActionCallback actionCallback(const std::shared_ptr<Output>& output);
NotificationManager::ContentHandler contentHandler(const std::shared_ptr<Output>& output);

}  // namespace kifo::tool
