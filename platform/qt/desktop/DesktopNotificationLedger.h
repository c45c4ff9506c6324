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

/// A notification that waits for the desktop or is shown on it.
///
/// **Threading:** a plain value.
struct DesktopNotification {
  std::string identifier;  ///< The host's; one that is shown is replaced by the next of the same.
  std::shared_ptr<const NotificationContent> content;  ///< Keeps the image's file.
  std::vector<NotificationAction> actions;             ///< Its category's when it was handed over.
  int attempts = 0;           ///< How often the service was asked to show it.
  bool onlyReplaces = false;  ///< Shown only in place of itself without a picture, never anew.
};

/// Keeps which notification the service shows under which number, and decides what a signal about
/// it means: an action counts more than a close, whichever comes first; a push is clicked at most
/// once; only a close whose reason is the user is a dismissal.
///
/// The last 64 closed notifications are remembered, without their images: a user may still click
/// them in the service's history.
///
/// **Threading:** UI thread only.
class DesktopNotificationLedger {
 public:
  using Id = std::uint32_t;  ///< The service's number; each service counts anew.

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

  /// The service shows `notification` under `id`, in place of an earlier one of its identifier.
  void shown(Id id, DesktopNotification notification);
  [[nodiscard]] bool knows(Id id) const { return entries_.contains(id); }
  /// The number of the open notification of that identifier.
  [[nodiscard]] std::optional<Id> idOf(const std::string& identifier) const;

  void activationToken(Id id, std::string token);
  /// The click that the signal means; none when the push was clicked before, or has no such action.
  std::optional<Click> actionInvoked(Id id, const std::string& key);

  /// The entry that the user dismissed, for `settle`; null when the close was no dismissal.
  std::shared_ptr<Entry> closed(Id id, std::uint32_t reason);
  /// Called when no action can follow any more. What to report as dismissed; null when an action
  /// did follow.
  static std::shared_ptr<const NotificationContent> settle(const Entry& entry);

  /// Forgets every number, after the end of the service. Returns what was still open, oldest first.
  std::vector<DesktopNotification> takeOpen();

 private:
  void retire(Id id, Entry& entry);

  std::map<Id, std::shared_ptr<Entry>> entries_;
  std::deque<Id> retired_;  ///< Those that are not open, oldest first.
};

}  // namespace kifo
