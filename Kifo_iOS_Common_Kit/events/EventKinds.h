#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/events/BaseEvent.h"
#include "Kifo_iOS_Common_Kit/events/EventInjections.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/ports/Error.h"

/// The kinds of event, each with the keys that it adds. Values; composed on the thread that sends.
namespace kifo {

/// "install": "anonymous" is true when the host gave no actor id of its own.
class InstallEvent final : public BaseEvent {
 public:
  explicit InstallEvent(bool anonymous)
      : BaseEvent(KifoEventType::INSTALL), anonymous_(anonymous) {}

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  bool anonymous_;
};

/// "actor_change": the record's actor is the old one.
class ActorChangeEvent final : public BaseEvent {
 public:
  ActorChangeEvent(const std::string& oldActorId, std::string newActorId);

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  std::string newActorId_;
};

/// "push_token_change".
class TokenChangeEvent final : public BaseEvent {
 public:
  explicit TokenChangeEvent(TokenProviderType provider)
      : BaseEvent(KifoEventType::TOKENCHANGE), provider_(provider) {}

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  TokenProviderType provider_;
};

/// "page_in" and "page_out".
class PageEvent final : public BaseEvent {
 public:
  PageEvent(KifoEventType type, PageContext page) : BaseEvent(type), page_(std::move(page)) {}

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  PageContext page_;
};

/// "application_error".
class ApplicationErrorEvent final : public BaseEvent {
 public:
  explicit ApplicationErrorEvent(Error error)
      : BaseEvent(KifoEventType::APPLICATION_ERROR), error_(std::move(error)) {}

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  Error error_;
};

/// "in_app_opened".
class OpenedEvent final : public BaseEvent {
 public:
  explicit OpenedEvent(std::shared_ptr<AppCommunicationItem> item)
      : BaseEvent(KifoEventType::INAPPOPENED), item_(std::move(item)) {}

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  std::shared_ptr<AppCommunicationItem> item_;
};

/// "InAppMessageResponse".
class InAppMessageEvent final : public BaseEvent {
 public:
  InAppMessageEvent(std::shared_ptr<AppCommunicationItem> item, InAppAnswer answer,
                    PageContext page)
      : BaseEvent(KifoEventType::INAPPMESSAGERESPONSE),
        item_(std::move(item)),
        answer_(std::move(answer)),
        page_(std::move(page)) {}

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  std::shared_ptr<AppCommunicationItem> item_;
  InAppAnswer answer_;
  PageContext page_;
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
  PushEvent(KifoEventType type, PushCampaign campaign, Response response,
            std::optional<std::string> buttonId = std::nullopt,
            std::optional<std::string> buttonText = std::nullopt);

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  PushCampaign campaign_;
  Response response_;
  std::optional<std::string> buttonId_;
  std::optional<std::string> buttonText_;
};

/// "push_notificition_denied", or "push_notification_permission_status" for any other status.
class PermissionStatusEvent final : public BaseEvent {
 public:
  explicit PermissionStatusEvent(KifoNotificationPermissionStatusType status);

 private:
  void addOwnKeys(EventParameters& parameters) const override;

  KifoNotificationPermissionStatusType status_;
};

/// A host's own event, and "login": starts from the host's parameters, which the SDK's keys
/// replace.
class CustomEvent final : public BaseEvent {
 public:
  CustomEvent(std::string eventName, EventParameters hostParameters, PageContext page)
      : BaseEvent(std::move(eventName)),
        hostParameters_(std::move(hostParameters)),
        page_(std::move(page)) {}

 private:
  [[nodiscard]] EventParameters initialParameters() override;

  EventParameters hostParameters_;
  PageContext page_;
};

}  // namespace kifo
