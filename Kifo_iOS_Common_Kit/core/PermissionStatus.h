#pragma once

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Asks the notification centre for the user's permission and keeps the session's
/// `notificationPermissionStatus` current when the answer comes. Returns at once; the status stays
/// as it was until then, and for good when no answer comes.
KIFO_EXPORT void refreshNotificationPermissionStatus();

}  // namespace kifo
