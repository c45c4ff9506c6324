#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationAppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A picture that goes with a notification.
struct NotificationAttachment {
  std::string identifier;
  std::string path;  ///< Of the file, absolute.
  /// Keeps the file: it is removed when the last copy of the attachment is gone.
  std::shared_ptr<const void> file;
};

/// What a notification shows, and the push that it came from.
///
/// **Ownership:** the files of its attachments live as long as a copy of the content does; whoever
/// shows a notification keeps its content until the notification is gone.
/// **Threading:** a plain value.
struct NotificationContent {
  UserInfo userInfo;
  std::string title;
  std::string body;
  std::string categoryIdentifier;  ///< Empty: no buttons.
  std::vector<NotificationAttachment> attachments;
};

struct NotificationRequest {
  std::string identifier;  ///< A later request of the same identifier replaces what is shown.
  std::shared_ptr<const NotificationContent> content;
};

/// A notification that was delivered.
struct Notification {
  NotificationRequest request;
};

/// What the user did with a notification.
struct NotificationResponse {
  /// A tap on the notification's body. No button bears it.
  static constexpr auto defaultActionIdentifier = "kifo.notification.default-action";

  std::string actionIdentifier;  ///< The button's id, or the one above.
};

/// The content of a push as it arrived: title and body are those of "aps"."alert" (an object, or a
/// text that is the body), else of "notification", else the user info's own "title" and "body".
KIFO_EXPORT NotificationContent contentOfPush(UserInfo userInfo);

/// The text under `key` of the user info; none when it is absent or no string.
KIFO_EXPORT std::optional<std::string> textIn(const UserInfo& userInfo, std::string_view key);

/// The campaign that the user info carries under "data"; null when there is none that can be read.
KIFO_EXPORT std::shared_ptr<NotificationAppCommunicationItem> campaignOf(const UserInfo& userInfo);

/// One line for the console. Of the user info it names the keys and keeps the values to itself.
KIFO_EXPORT std::string description(const NotificationContent& content);

}  // namespace kifo
