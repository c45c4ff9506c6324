#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/NotificationCentre.h"

namespace kifo {

class BackgroundWorker;
class DesktopNotificationService;

/// Pushes as notifications of the user's desktop, on the service org.freedesktop.Notifications:
///
///     auto centre = std::make_shared<kifo::DesktopNotificationCentre>(
///         kifo::DesktopNotificationCentre::Options{.applicationName = "Shop"},
///         [](auto action, const std::string& token) { if (action) open(*action->link, token); });
///     platform.notifications = centre;      // then Platform::install(platform)
///     …
///     centre->deliver(userInfo);            // whenever a push arrives
///
/// Nothing waits for the desktop: a service that is missing, starts late, hangs or restarts gets
/// the notifications when it is there again. Only while there is none the number of those that wait
/// is limited, to the newest 32. Images, buttons and events are `NotificationManager`'s; a push is
/// reported as clicked at most once, and as dismissed only when the service says that the user did
/// it. The permission is authorized when a service answers and denied when it inhibits
/// notifications; until a first service has answered it is not determined, or denied when there is
/// none. The end of a service leaves it as it was.
///
/// **Threading:** made on the UI thread, with a QApplication running; afterwards thread-safe.
/// Clicks come on the UI thread. `deliver`, `show` and `close` return at once and take effect in
/// the order of their calls. Pictures are loaded four at a time on threads of the centre's own; a
/// push does not wait for the picture of another one.
/// **Ownership:** may be destroyed at any time and on any thread; notifications on the desktop stay
/// there, and clicks on them are ignored.
/// **Errors:** none are reported; a notification that is not shown is a console line and, to the
/// inspector, the decision "notification".
class KIFO_EXPORT DesktopNotificationCentre final : public NotificationCentre {
 public:
  static constexpr std::string_view LOG_TAG = "Kifo DesktopNotificationCentre:";

  struct Options {
    std::string applicationName = {};  ///< Shown with every notification; its title if it has none.
    std::string applicationIcon = {};  ///< Name in the icon theme, or a path.
    std::string desktopEntry =
        {};  ///< The .desktop file's name without suffix: desktops group by it.
    std::string openLabel = "Open";  ///< What desktops that list it call the tap on the body.
    std::string busAddress = {};     ///< Another bus than the session's.
    bool imagesAsData = false;       ///< For desktops that cannot read this program's files.
    double pictureGrace = 1.0;       ///< Seconds after which a push is shown without its picture.
    double dismissalGrace = 1.0;     ///< Seconds after a close in which a click still counts.
    double retryInterval = 5.0;      ///< Seconds between two looks for a missing service.
  };

  /// Gets the action of a click, null when the push has none, and the token with which the
  /// compositor raises the host's window: put it into the environment as XDG_ACTIVATION_TOKEN and
  /// activate the window. The token is empty where there is none.
  using ClickHandler = std::function<void(std::shared_ptr<AppCommunicationItemAction> action,
                                          const std::string& activationToken)>;

  DesktopNotificationCentre(Options options, ClickHandler onClick);
  ~DesktopNotificationCentre() override;

  /// Takes a push as it arrived: reports it received, loads its image and shows it. One whose image
  /// is late is shown without it first. `identifier` names the push for a later one that replaces
  /// it, and for `close`; empty makes it one of its own.
  void deliver(UserInfo userInfo, std::string identifier = {});

  /// Shows a notification that is ready, with the buttons of its category as it is registered now.
  void show(const NotificationRequest& request);

  /// Takes a notification off the desktop, or out of those that wait for it.
  void close(const std::string& identifier);

  /// Answers at once with what is known, and asks the desktop anew.
  void getNotificationSettings(std::function<void(int authorizationStatus)> completion) override;
  void setNotificationCategories(std::vector<NotificationCategory> categories) override;

 private:
  struct Shared;

  void removeLeftoversOnce();

  const std::shared_ptr<Shared> shared_;
  const std::unique_ptr<BackgroundWorker> worker_;  ///< One thread, which keeps the calls' order.
  std::atomic<bool> removedLeftovers_ = false;
  DesktopNotificationService* service_;  ///< Lives, and ends, on the UI thread.
};

}  // namespace kifo
