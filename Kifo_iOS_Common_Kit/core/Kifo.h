#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/ConsentStatus.h"
#include "Kifo_iOS_Common_Kit/core/KifoInitConfig.h"
#include "Kifo_iOS_Common_Kit/core/Statistics.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupInfo.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// What a host calls first: it initialises the SDK once, then sends its events through
/// `KifoEventManager`:
///
///     kifo::KifoInitConfig configuration;
///     configuration.bundle = {"com.example.shop"};
///     configuration.apiUri = "https://api.example.com/inapp";
///     configuration.listenerUri = "https://listen.example.com/events";
///     configuration.authorization = token;
///     kifo::Kifo::initialize(configuration);
///     …
///     kifo::Kifo::shutdown();
///
/// **Threading:** every operation is thread-safe. `initialize` waits on the calling thread only for
/// a token service; nothing else here touches disk or network there, but for one small file read
/// and, when the user's consent is told, one small file's name.
/// **Errors:** nothing throws. What went wrong shows in `getInitializeStatusType` and on the
/// console.
class KIFO_EXPORT Kifo {
 public:
  using OnSuccess = std::function<void()>;

  static constexpr std::string_view LOG_TAG = "Kifo Kifo:";

  /// Carries no state; every operation is static.
  static const Kifo& sharedInstance();

  /// Initialises the SDK. `onSuccess` runs once the server's first in-app answer is there, on the
  /// SDK's answer queue. Already initialised, it does nothing unless `forceInitialize` is set.
  static void initialize(const KifoInitConfig& configuration, OnSuccess onSuccess = {});

  /// The short form: it neither checks nor changes the status before the server answers, reports no
  /// install and checks no push tokens.
  static void initialize(const std::string& apiUri, const std::string& listenerUri,
                         const std::string& authorization, const std::string& localOrigin,
                         const std::optional<std::string>& actorId,
                         const std::string& applicationName, bool offlineCachingDisabled);

  static bool isInitialized();
  static InitializeStatusType getInitializeStatusType();

  /// The user agrees that the SDK works; remembered from now on. An initialisation that waits for
  /// it (`KifoInitConfig::requiresConsent`) runs now, on the calling thread; on the answer queue
  /// when an erasing has to be finished first.
  static void giveConsent();
  /// The user does not agree, or not any more: requests under way are cancelled, and the main queue
  /// erases what was kept: requests, counters, actor, tokens, budgets and pictures. From the call
  /// on nothing leaves and nothing is kept, as before `giveConsent`, which initialises anew with
  /// the last configuration, whether or not that one required consent. Remembered from now on; a
  /// process that is killed before all is erased erases the rest at the next initialisation.
  ///
  /// May be called at any time, also from callbacks. A popup that is open stays open; its answer is
  /// dropped. `statistics` begins anew.
  static void revokeConsent();
  /// What the user has chosen, in this process or an earlier one.
  static ConsentStatus consent();

  /// Makes `newActorId` the user and remembers it; a change of user is sent as an event.
  static void updateActorId(const std::string& newActorId);
  static void setPushToken(const std::string& token);
  static void setApnsToken(const std::vector<std::uint8_t>& deviceToken);
  /// An empty token is refused with a console line.
  static void setAuthorizationToken(const std::string& token);

  /// The hooks that a host calls from its application's own life cycle.
  static void didFinishLaunchingWithOptions();
  static void applicationDidReceiveRemoteNotification(const UserInfo& userInfo);
  static void applicationDidBecomeActive();
  static void applicationWillResignActive();

  /// The switches, readable and writable at any time.
  static SendEventStatus sendEventStatus();
  static void setSendEventStatus(SendEventStatus status);
  static SendLifeCycleEventStatus sendApplicationLifeCycleEventStatus();
  static void setSendApplicationLifeCycleEventStatus(SendLifeCycleEventStatus status);
  static SendLifeCycleEventStatus sendActivityLifeCycleEventStatus();
  static void setSendActivityLifeCycleEventStatus(SendLifeCycleEventStatus status);

  static bool isWifiStatusRequired();
  static void setIsWifiStatusRequired(bool isRequired);
  static bool isDiskCapacityRequired();
  static void setIsDiskCapacityRequired(bool isRequired);
  static bool isBatteryStatusRequired();
  static void setIsBatteryStatusRequired(bool isRequired);
  static bool isLocationRequired();
  static void setIsLocationRequired(bool isRequired);

  /// The host's gate, asked on the UI thread each time a popup is due; an empty one lets all show,
  /// as without a gate. It is not asked while popups are paused. It may call the SDK, replace
  /// itself and close the screen; one that throws is a console line and counts as "later". After
  /// "later" the popup keeps its place among those that were due and is asked for again when the
  /// switch changes, a screen appears or the host calls `popupsMayShow`. Nothing of the campaign is
  /// spent or reported until it shows.
  static void setPopupGate(PopupDecider gate);
  /// Holds all popups back, as during a film, a drive or a payment, or lets them show again: each
  /// campaign that became due meanwhile and is still valid, once. A popup that is shown stays.
  static void setPopupsPaused(bool isPaused);
  static bool popupsPaused();
  /// Has popups that wait for "later" asked for again. A call from inside the gate does nothing.
  static void popupsMayShow();

  /// The service that is asked for a token when the server refuses one. May be null.
  static std::shared_ptr<TokenServiceProtocol> tokenService();
  static void setTokenService(std::shared_ptr<TokenServiceProtocol> service);

  /// What the SDK currently goes by, as copies.
  static std::string apiUri();
  static std::string listenerUri();
  static std::string authorization();
  static std::string localOrigin();
  static std::string actorId();
  static std::string applicationName();
  static std::string pushToken();
  static std::string apnsToken();
  static bool offlineCachingDisabled();
  static KifoNetworkStatus networkStatus();
  static KifoNotificationPermissionStatusType notificationPermissionStatus();
  static bool isInstall();
  static bool isStarted();
  /// Seconds; none before initialisation.
  static std::optional<double> requestTimeout();

  /// What the SDK has counted: what became of each event and each popup. Takes no lock that a
  /// sender takes. Without a session, before the first call and after `shutdown`, all are 0.
  static Statistics statistics();

  /// Lets tools of this user look into the process until `shutdown`, as KIFO_WATCH=1 in the
  /// environment does: every event, decision and reason as it happens, the counters, the stored
  /// rows, the campaigns; tokens are masked. They can change nothing. See docs/tool.md.
  static void enableWatching();

  /// Waits until everything that was sent has been stored and answered, `bound` seconds at most
  /// (a day at most). True when nothing is left to do; timers (a popup that is due in half a
  /// second) do not count. Must not be called from one of the SDK's callbacks.
  static bool waitUntilIdle(double bound);

  /// Stops the SDK: stores what is still queued, waits for the answers of what is under way, then
  /// ends its threads. Never takes longer than `bound` seconds; returns whether all was done by
  /// then. The SDK can be initialised again afterwards. Must not be called from one of its
  /// callbacks.
  static bool shutdown(double bound = 2.0);
};

}  // namespace kifo
