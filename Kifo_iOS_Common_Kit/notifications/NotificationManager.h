#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"
#include "Kifo_iOS_Common_Kit/ports/CollectionView.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/NotificationCentre.h"

namespace kifo {

/// Makes of a push what the desktop shows, and of what the user does with it an event and an action
/// for the host. A desktop host has `DesktopNotificationCentre` call all this:
///
///     kifo::NotificationManager::didReceive(request, [](auto content) { show(*content); });
///     …
///     kifo::NotificationManager::handleNotification(content->userInfo, {"buy"},
///                                                   [](auto action) { open(action); });
///
/// **Threading:** thread-safe, but for `collectionView`, which belongs to the UI thread.
/// **Errors:** none are reported; a push whose campaign cannot be read is shown all the same.
class KIFO_EXPORT NotificationManager {
 public:
  static constexpr std::string_view LOG_TAG =
      "Kifo NotificationManager:";  ///< Starts its console lines.

  using ActionCallback = std::function<void(std::shared_ptr<AppCommunicationItemAction>)>;
  using ContentHandler = std::function<void(std::shared_ptr<const NotificationContent>)>;
  using Buttons = std::vector<std::shared_ptr<AppCommunicationItemButton>>;

  /// The identifier of the one category, which carries a push's buttons.
  static constexpr auto CATEGORY = "KifoNotificationCategory";

  /// Asks the notification centre for the permission; the session's status follows when it answers.
  static void refreshNotificationPermissionStatusType();

  /// Reports a tap on a push as clicked and hands its action to `actionCallback`: that of the
  /// tapped button, else the push's own; null when there is none. A push without a readable
  /// campaign is neither reported nor handed on.
  static void handleNotification(const UserInfo& userInfo, const NotificationResponse& response,
                                 const ActionCallback& actionCallback);

  /// A push that was reported as received and whose picture is not loaded yet.
  struct ReceivedPush {
    std::shared_ptr<const NotificationContent> content;  ///< Null: the request had none.
    std::vector<NotificationAction> actions;             ///< Its buttons.
    std::string imageUrl;                                ///< Empty: it has no picture.
  };

  /// The part of `didReceive` that waits for nothing: reports the push as received and registers
  /// its buttons.
  static ReceivedPush receive(const NotificationRequest& request);

  /// Prepares a push for being shown: reports it as received, registers its buttons and attaches
  /// its image. `contentHandler` runs once, before this returns; only a request without content has
  /// it not run at all.
  ///
  /// **Threading:** loads the image on the calling thread and waits for it, 7 seconds at most.
  /// Never call it on the UI thread.
  static void didReceive(const NotificationRequest& request, const ContentHandler& contentHandler);

  /// Makes the category of `buttons` the only one there is and `content`, when given, one of it.
  /// Returns that category. A button without an id or a text is left out.
  static NotificationCategory registerCategory(NotificationContent* content,
                                               const std::optional<Buttons>& buttons);

  /// The carousel that is on show, or null. Its view sets it and takes it back when it goes.
  static CollectionView* collectionView();
  static void setCollectionView(CollectionView* view);
};

}  // namespace kifo
