#pragma once

#include <memory>

namespace kifo {

class Runtime;

/// Asks the notification centre for the user's permission and keeps the runtime's
/// `notificationPermissionStatus` current when the answer comes. Returns at once; the status stays
/// as it was until then, and for good when no answer comes.
void refreshNotificationPermissionStatus(const std::shared_ptr<Runtime>& runtime);

}  // namespace kifo
