#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/events/BaseEvent.h"
#include "Kifo_iOS_Common_Kit/events/EventInjections.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/ports/Error.h"

/// The kinds of event, each with the keys that it adds.
namespace kifo {

/// "install": "anonymous" is true when the host gave no actor id of its own.
class InstallEvent final : public BaseEvent {
 public:
  explicit InstallEvent(bool anonymous);
};

/// "actor_change": the record's actor is the old one.
class ActorChangeEvent final : public BaseEvent {
 public:
  ActorChangeEvent(const std::string& oldActorId, const std::string& newActorId);
};

/// "push_token_change".
class TokenChangeEvent final : public BaseEvent {
 public:
  explicit TokenChangeEvent(TokenProviderType provider);
};

/// "page_in" and "page_out".
class PageEvent final : public BaseEvent {
 public:
  PageEvent(KifoEventType type, const PageContext& page);
};

/// "application_error".
class ApplicationErrorEvent final : public BaseEvent {
 public:
  explicit ApplicationErrorEvent(const Error& error);
};

/// "in_app_opened".
class OpenedEvent final : public BaseEvent {
 public:
  explicit OpenedEvent(const AppCommunicationItem* item);
};

/// "InAppMessageResponse".
class InAppMessageEvent final : public BaseEvent {
 public:
  InAppMessageEvent(const AppCommunicationItem* item, const InAppAnswer& answer,
                    const PageContext& page);
};

/// What a push says about its campaign, as far as events carry it.
struct PushCampaign {
  std::optional<std::string> pushToken;
  std::optional<std::string> actorId;
  std::optional<std::string>
      uuid;  ///< The campaign's identity; it travels as "communication_name".
  std::optional<std::string> code;
  std::optional<std::string> scenario;
  std::optional<std::string> type;
};

template <>
struct RecordFields<PushCampaign> {
  static constexpr auto fields = std::tuple(
      field("pushToken", &PushCampaign::pushToken), field("actorId", &PushCampaign::actorId),
      field("uuid", &PushCampaign::uuid), field("code", &PushCampaign::code),
      field("scenario", &PushCampaign::scenario), field("type", &PushCampaign::type));
};

/// "push_notification_received", "…_clicked" and "…_dismissed".
class PushEvent final : public BaseEvent {
 public:
  enum class Response { none, self, button };

  /// The campaign's actor and scenario are the event's; a campaign without actor counts as the
  /// session's actor.
  PushEvent(KifoEventType type, const PushCampaign& campaign, Response response,
            const std::optional<std::string>& buttonId = std::nullopt,
            const std::optional<std::string>& buttonText = std::nullopt);
};

/// "push_notificition_denied", or "push_notification_permission_status" for any other status.
class PermissionStatusEvent final : public BaseEvent {
 public:
  explicit PermissionStatusEvent(KifoNotificationPermissionStatusType status);
};

/// A host's own event, and "login": starts from the host's parameters, which the SDK's keys
/// replace.
class CustomEvent final : public BaseEvent {
 public:
  CustomEvent(std::string eventName, EventParameters hostParameters, const PageContext& page);
};

}  // namespace kifo
