#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AnswerModels.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/ports/Error.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The one place through which every event leaves the SDK:
///
///     kifo::KifoEventManager::sendEvent("basket_opened", "Basket", {{"items", 3}});
///
/// Every operation prints the send gate's advice, drops a blocked event silently, composes the
/// event with the device's and the session's context, and hands it to the service client, which
/// stores and sends it.
///
/// **Threading:** thread-safe. Runs on the caller's thread up to the hand-over and never touches
/// the disk or the network there. `onActionRequired` runs on the UI thread, where the user's choice
/// is made; in the form without a screen it runs on the SDK's main queue.
/// **Errors:** none are reported; what could not be sent is stored and sent again later.
class KIFO_EXPORT KifoEventManager {
 public:
  static constexpr std::string_view LOG_TAG = "Kifo KifoEventManager:";

  using ButtonAction = std::function<void(std::shared_ptr<AppCommunicationItemButton>)>;
  using ItemAction = std::function<void(std::shared_ptr<AppCommunicationItem>)>;

  /// `localActorId` is the actor id that the host gave; none or empty makes the install anonymous.
  static void sendInstallEvent(const std::optional<std::string>& localActorId);
  static void sendInitializeEvent();
  static void sendTokenChangeEvent(TokenProviderType tokenProvider);
  static void sendChangeActorEvent(const std::string& oldActorId, const std::string& newActorId);
  static void sendAppForegroundEvent();
  static void sendAppBackgroundEvent();

  /// Also asks the server for its campaigns anew; a custom event sent meanwhile triggers its popup
  /// when the answer is there.
  static void sendPageInEvent(std::shared_ptr<ViewController> controller,
                              std::optional<std::string> pageName);
  static void sendPageOutEvent(std::shared_ptr<ViewController> controller,
                               std::optional<std::string> pageName);

  /// "type" carries the error's domain, "message" its message.
  static void sendApplicationErrorEvent(const Error& error);

  static void sendLoginEvent(std::shared_ptr<ViewController> controller,
                             std::optional<std::string> pageName,
                             EventParameters initialParameters = {});

  /// A custom event; it may trigger campaigns, whose chosen button comes back in
  /// `onActionRequired`.
  static void sendEvent(std::shared_ptr<ViewController> controller, const std::string& eventName,
                        std::optional<std::string> pageName, EventParameters initialParameters = {},
                        ButtonAction onActionRequired = {});
  /// A custom event without a screen: a campaign that it triggers has nowhere to be shown.
  static void sendEvent(const std::string& eventName, std::optional<std::string> pageName,
                        EventParameters initialParameters = {}, ItemAction onActionRequired = {});

  /// Push events carry the session's push token; `pushToken` is not sent.
  static void sendPushNotificationReceivedEvent(const std::string& pushToken,
                                                const std::string& actorId,
                                                const std::string& communicationName,
                                                const std::string& code,
                                                const std::string& scenario);
  static void sendPushNotificationClickedEvent(const std::string& pushToken,
                                               const std::string& actorId,
                                               const std::string& communicationName,
                                               const std::string& code, const std::string& scenario,
                                               const std::optional<std::string>& buttonName,
                                               const std::optional<std::string>& buttonText);
  /// The values are taken from the campaign data that the push carries under "data".
  static void sendPushNotificationDismissedEvent(const UserInfo& userInfo);
  /// "push_notificition_denied" when the user info's "status" says denied, else
  /// "push_notification_permission_status"; "UNKNOWN" travels when there is no readable status.
  static void sendNotificationPermissionStatusEvent(const UserInfo& userInfo);

  static void sendOpenedEvent(std::shared_ptr<AppCommunicationItem> event,
                              std::shared_ptr<ViewController> controller,
                              std::optional<std::string> pageName);
  static void sendInAppMessageEvent(std::shared_ptr<AppCommunicationItem> event,
                                    std::shared_ptr<AppCommunicationItemAction> body,
                                    std::shared_ptr<AppCommunicationItemButton> choice,
                                    std::shared_ptr<AppCommunicationItemButton> button,
                                    std::optional<ScoreFieldModel> scoreField,
                                    std::optional<OpenEndedFieldModel> openEndedField,
                                    std::optional<ChoiseFieldModel> choiseField,
                                    std::shared_ptr<ViewController> controller,
                                    std::optional<std::string> pageName);

  /// Shows the campaign `action` half a second from now, by its type. `fromNotification` says that
  /// a push asked for it.
  static void handlePopupAction(std::shared_ptr<ViewController> controller,
                                std::optional<std::string> pageName,
                                std::shared_ptr<AppCommunicationItem> action, bool fromNotification,
                                ButtonAction onActionRequired);

  /// Where popups report what happened to them.
  static std::shared_ptr<InAppReporter> reporter();
};

}  // namespace kifo
