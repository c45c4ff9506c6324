#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A button of a notification.
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

/// The system's notification centre, as far as the event path needs it. The desktop's is in
/// `platform/qt/`.
///
/// **Threading:** thread-safe; returns at once. The completion runs on any thread, at most once,
/// and never when the centre gives no answer.
class KIFO_EXPORT NotificationCentre {
 public:
  virtual ~NotificationCentre() = default;

  /// Reads the permission: 0 not determined, 1 denied, 2 authorized, 3 provisional, 4 ephemeral.
  virtual void getNotificationSettings(std::function<void(int authorizationStatus)> completion) = 0;

  /// Replaces all registered categories.
  virtual void setNotificationCategories(std::vector<NotificationCategory> categories) = 0;
};

}  // namespace kifo
