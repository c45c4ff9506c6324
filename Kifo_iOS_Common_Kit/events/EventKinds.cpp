#include "Kifo_iOS_Common_Kit/events/EventKinds.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"

namespace kifo {
namespace {

using Text = std::optional<std::string>;

/// Inserts a value, or takes the key out when there is none.
void setOrErase(EventParameters& parameters, const char* key, const Text& value) {
  if (value) {
    parameters[key] = *value;
  } else {
    parameters.erase(key);
  }
}

Text withoutCommas(const Text& text) {
  return text ? Text(Session::withoutCommas(*text)) : std::nullopt;
}

void addItem(EventParameters& parameters, const AppCommunicationItem* item) {
  if (!item) return;
  setOrErase(parameters, Constants::UUID, item->uuid);
  setOrErase(parameters, Constants::CODE, item->code);
  setOrErase(parameters, Constants::TYPE, item->type);
  setOrErase(parameters, Constants::SURVEY_QUESTION,
             item->question ? item->question->text : Text());
}

void addChosen(EventParameters& parameters, const char* responseType,
               const AppCommunicationItemButton* button) {
  setOrErase(parameters, Constants::RESPONSE_ID, button ? withoutCommas(button->id) : Text());
  parameters[Constants::RESPONSE_TYPE] = responseType;
}

void addText(EventParameters& parameters, const AppCommunicationItemButton* button) {
  setOrErase(parameters, Constants::RESPONSE_TEXT, button ? button->text : Text());
}

void addUnchosen(EventParameters& parameters, const char* responseType) {
  parameters[Constants::RESPONSE_ID] = "";
  parameters[Constants::RESPONSE_TYPE] = responseType;
}

void addScore(EventParameters& parameters, const ScoreFieldModel& score) {
  setOrErase(parameters, Constants::DEFAULT_FREE_TEXT, score.freeText);
  parameters[Constants::SLIDER_VALUE] = score.value;
  parameters[Constants::RESPONSE_TYPE] = "SCORE";
}

void addOpenEnded(EventParameters& parameters, const OpenEndedFieldModel& answer) {
  setOrErase(parameters, Constants::DEFAULT_FREE_TEXT, answer.freeText);
  parameters[Constants::RESPONSE_TYPE] = "OPEN_ENDED";
}

void addChoice(EventParameters& parameters, const InAppAnswer& answer,
               const AppCommunicationItem* item) {
  const bool isSurvey = item && item->type == std::string(rawValue(PopupType::survey));
  addChosen(parameters, isSurvey ? "CHOICE" : "EMOJI", answer.choice.get());
  if (isSurvey) addText(parameters, answer.choice.get());
  setOrErase(parameters, Constants::DEFAULT_FREE_TEXT, answer.choiseField->freeText);
}

/// The answer's kind is decided by what there is, in this order; a combination that no popup makes
/// adds nothing.
void addAnswer(EventParameters& parameters, const InAppAnswer& answer,
               const AppCommunicationItem* item) {
  if (answer.scoreField) return addScore(parameters, *answer.scoreField);
  if (answer.openEndedField) return addOpenEnded(parameters, *answer.openEndedField);
  if (answer.choiseField) return addChoice(parameters, answer, item);
  if (answer.body) return addUnchosen(parameters, "BODY");
  if (answer.button) {
    addChosen(parameters, "BUTTON", answer.button.get());
    return addText(parameters, answer.button.get());
  }
  if (!answer.choice) addUnchosen(parameters, "REJECT");
}

constexpr auto kPermissionStatusEvent = "push_notification_permission_status";

}  // namespace

InstallEvent::InstallEvent(bool anonymous) : BaseEvent(KifoEventType::INSTALL) {
  ownKeys_[Constants::ANONYMOUS] = anonymous;
}

ActorChangeEvent::ActorChangeEvent(const std::string& oldActorId, const std::string& newActorId)
    : BaseEvent(KifoEventType::ACTOR_CHANGE) {
  actorId = Session::withoutCommas(oldActorId);
  ownKeys_[Constants::NEW_ACTOR_ID] = newActorId;
}

TokenChangeEvent::TokenChangeEvent(TokenProviderType provider)
    : BaseEvent(KifoEventType::TOKENCHANGE) {
  ownKeys_[Constants::TOKEN_PROVIDER] = std::string(rawValue(provider));
}

PageEvent::PageEvent(KifoEventType type, const PageContext& page) : BaseEvent(type) {
  EventPageInjected::inject(ownKeys_, page);
}

ApplicationErrorEvent::ApplicationErrorEvent(const Error& error)
    : BaseEvent(KifoEventType::APPLICATION_ERROR) {
  ownKeys_[Constants::MESSAGE] = error.message;
  ownKeys_[Constants::ERROR_TYPE] = error.domain;
}

OpenedEvent::OpenedEvent(const AppCommunicationItem* item) : BaseEvent(KifoEventType::INAPPOPENED) {
  addItem(ownKeys_, item);
}

InAppMessageEvent::InAppMessageEvent(const AppCommunicationItem* item, const InAppAnswer& answer,
                                     const PageContext& page)
    : BaseEvent(KifoEventType::INAPPMESSAGERESPONSE) {
  addItem(ownKeys_, item);
  EventPageInjected::inject(ownKeys_, page);
  addAnswer(ownKeys_, answer, item);
}

PushEvent::PushEvent(KifoEventType type, const PushCampaign& campaign, Response response,
                     const Text& buttonId, const Text& buttonText)
    : BaseEvent(type) {
  scenario = campaign.scenario.value_or("");
  const std::string addressee = Session::withoutCommas(campaign.actorId.value_or(""));
  if (!addressee.empty()) actorId = addressee;
  if (response != Response::none) {
    ownKeys_[Constants::RESPONSE_TYPE] = response == Response::button ? "BUTTON" : "SELF";
  }
  ownKeys_[Constants::RESPONSE_ID] = withoutCommas(buttonId).value_or("");
  setOrErase(ownKeys_, Constants::RESPONSE_TEXT, buttonText);
  ownKeys_[Constants::STATUS] =
      std::string(rawValue(Session::shared().notificationPermissionStatus.load()));
  setOrErase(ownKeys_, Constants::CODE, campaign.code);
  setOrErase(ownKeys_, Constants::TYPE, campaign.type);
  setOrErase(ownKeys_, Constants::COMMUNICATION_NAME, campaign.uuid);
  // Where the host has set no token of its own, the one that the push was sent to is the device's.
  if (Session::shared().identity()->pushToken.empty()) {
    setOrErase(ownKeys_, Constants::PUSH_TOKEN, campaign.pushToken);
  }
}

PermissionStatusEvent::PermissionStatusEvent(KifoNotificationPermissionStatusType status)
    : BaseEvent(status == KifoNotificationPermissionStatusType::DENIED
                    ? std::string(rawValue(KifoEventType::PUSH_NOTIFICATION_DENIED))
                    : kPermissionStatusEvent) {
  ownKeys_[Constants::STATUS] = std::string(rawValue(status));
}

CustomEvent::CustomEvent(std::string eventName, EventParameters hostParameters,
                         const PageContext& page)
    : BaseEvent(std::move(eventName)) {
  initialParameters_ = std::move(hostParameters);
  EventPageInjected::inject(initialParameters_, page);
}

}  // namespace kifo
