#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A button that the desktop draws on a notification.
struct NotificationAction {
  std::string identifier;
  std::string title;
  unsigned options = 0;  ///< 4: brings the application to the foreground.

  friend bool operator==(const NotificationAction&, const NotificationAction&) = default;
};

struct NotificationCategory {
  std::string identifier;
  std::vector<NotificationAction> actions;

  friend bool operator==(const NotificationCategory&, const NotificationCategory&) = default;
};

/// The system's notification centre, as far as the event path needs it. What shows notifications on
/// a desktop stands in `platform/qt/`.
///
/// **Threading:** thread-safe; returns at once. The completion runs on a thread of the centre's
/// choosing, or never when the centre gives no answer.
class KIFO_EXPORT NotificationCentre {
 public:
  virtual ~NotificationCentre() = default;

  /// Asks for the permission: 0 not determined, 1 denied, 2 authorized, 3 provisional, 4 ephemeral.
  virtual void getNotificationSettings(std::function<void(int authorizationStatus)> completion) = 0;

  /// Registers the only categories there are, replacing those of before.
  virtual void setNotificationCategories(std::vector<NotificationCategory> categories) = 0;
};

}  // namespace kifo
