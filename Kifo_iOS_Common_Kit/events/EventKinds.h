#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/events/BaseEvent.h"
#include "Kifo_iOS_Common_Kit/events/EventInjections.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/ports/Error.h"

/// One function for each kind of event, which makes it with the keys that the kind adds. A kind
/// without keys of its own is a `BaseEvent` of its type.
namespace kifo {

/// "install": "anonymous" is true when the host gave no actor id of its own.
BaseEvent installEvent(bool anonymous);

/// "actor_change": the event's actor is the old one.
BaseEvent actorChangeEvent(const std::string& oldActorId, const std::string& newActorId);

/// "push_token_change".
BaseEvent tokenChangeEvent(TokenProviderType provider);

/// "page_in" and "page_out".
BaseEvent pageEvent(KifoEventType type, const PageContext& page);

/// "application_error".
BaseEvent applicationErrorEvent(const Error& error);

/// "in_app_opened".
BaseEvent openedEvent(const AppCommunicationItem* item);

/// "InAppMessageResponse".
BaseEvent inAppMessageEvent(const AppCommunicationItem* item, const InAppAnswer& answer,
                            const PageContext& page);

/// What a push says about its campaign, as far as events carry it.
struct PushCampaign {
  std::optional<std::string> actorId;  ///< None or empty: the session's actor.
  std::optional<std::string> uuid;     ///< The campaign's identity, sent as "communication_name".
  std::optional<std::string> code;
  std::optional<std::string> scenario;  ///< None: "ALL".
  std::optional<std::string> type;
};

template <>
struct RecordFields<PushCampaign> {
  static constexpr auto fields =
      std::tuple(field("actorId", &PushCampaign::actorId), field("uuid", &PushCampaign::uuid),
                 field("code", &PushCampaign::code), field("scenario", &PushCampaign::scenario),
                 field("type", &PushCampaign::type));
};

/// The button of a push that the user pressed.
struct PushButton {
  std::optional<std::string> id;
  std::optional<std::string> text;
};

/// "push_notification_received", without a response type.
BaseEvent pushReceivedEvent(const PushCampaign& campaign);
/// "push_notification_clicked": a press of `button`, or of the push itself where there is none.
BaseEvent pushClickedEvent(const PushCampaign& campaign, const PushButton& button);
/// "push_notification_dismissed".
BaseEvent pushDismissedEvent(const PushCampaign& campaign);

/// "push_notificition_denied", or "push_notification_permission_status" for any other status.
BaseEvent permissionStatusEvent(KifoNotificationPermissionStatusType status);

/// A host's own event, and "login": starts from the host's parameters, which the SDK's keys
/// replace.
BaseEvent customEvent(std::string name, EventParameters hostParameters, const PageContext& page);

}  // namespace kifo
