#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
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
  int attempts = 0;           ///< How often the service was asked to show it.
  bool onlyReplaces = false;  ///< To be shown in place of its own text only, not anew.
};

/// Knows what is on the desktop under which number, and what a signal about it may honestly be
/// taken for: an action wins over a close whichever comes first, a push is clicked at most once,
/// and only a close that the service puts down to the user is a dismissal.
///
/// A notification that was closed is remembered for a while, without its image: services keep
/// histories, from which it may still be clicked.
///
/// **Threading:** UI thread only.
class DesktopNotificationLedger {
 public:
  using Id = std::uint32_t;  ///< The service's number; it begins anew with every service.

  /// The names under which the service knows the actions.
  static constexpr auto DEFAULT_KEY = "default";
  static std::string keyOf(std::size_t action) { return "kifo-" + std::to_string(action); }

  struct Click {
    std::shared_ptr<const NotificationContent> content;
    std::string actionIdentifier;
    std::string activationToken;  ///< Empty when the service gave none.
  };
  struct Entry {
    DesktopNotification notification;
    std::string activationToken;
    bool open = true;
    bool clicked = false;
    bool dismissed = false;
  };

  /// The service shows `notification` under `id`; an earlier one of the same identifier is gone.
  void shown(Id id, DesktopNotification notification);
  [[nodiscard]] bool knows(Id id) const { return entries_.contains(id); }
  /// The number of the open notification of that identifier.
  [[nodiscard]] std::optional<Id> idOf(const std::string& identifier) const;

  void activationToken(Id id, std::string token);
  /// The click that the signal stands for; none when the push was clicked before, or when nothing
  /// of that name was offered.
  std::optional<Click> actionInvoked(Id id, const std::string& key);

  /// The entry that the user dismissed, for `settle`; null when nothing of the sort may be claimed.
  std::shared_ptr<Entry> closed(Id id, std::uint32_t reason);
  /// To be asked once no action can follow any more: what to report as dismissed, or null when an
  /// action did follow.
  static std::shared_ptr<const NotificationContent> settle(const Entry& entry);

  /// Forgets every number, for the service that gave them is gone; hands back what was still open,
  /// oldest first.
  std::vector<DesktopNotification> takeOpen();

 private:
  void retire(Id id, Entry& entry);

  std::map<Id, std::shared_ptr<Entry>> entries_;
  std::deque<Id> retired_;  ///< Those that are not open, oldest first.
};

}  // namespace kifo
