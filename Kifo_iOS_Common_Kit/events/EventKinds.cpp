#include "Kifo_iOS_Common_Kit/events/EventKinds.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Session.h"
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

/// As the ids of chosen buttons are sent. Kept for compatibility.
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

/// What the three kinds of push event share.
BaseEvent pushEvent(KifoEventType type, const PushCampaign& campaign) {
  BaseEvent event(type);
  event.scenario = campaign.scenario.value_or(Constants::ALL);
  const std::string addressee = Session::withoutCommas(campaign.actorId.value_or(""));
  if (!addressee.empty()) event.actorId = addressee;
  event.reportsStatus = true;
  event.ownKeys[Constants::RESPONSE_ID] = "";
  setOrErase(event.ownKeys, Constants::CODE, campaign.code);
  setOrErase(event.ownKeys, Constants::TYPE, campaign.type);
  setOrErase(event.ownKeys, Constants::COMMUNICATION_NAME, campaign.uuid);
  return event;
}

}  // namespace

BaseEvent installEvent(bool anonymous) {
  BaseEvent event(KifoEventType::INSTALL);
  event.ownKeys[Constants::ANONYMOUS] = anonymous;
  return event;
}

BaseEvent actorChangeEvent(const std::string& oldActorId, const std::string& newActorId) {
  BaseEvent event(KifoEventType::ACTOR_CHANGE);
  event.actorId = Session::withoutCommas(oldActorId);
  event.ownKeys[Constants::NEW_ACTOR_ID] = newActorId;
  return event;
}

BaseEvent tokenChangeEvent(TokenProviderType provider) {
  BaseEvent event(KifoEventType::TOKENCHANGE);
  event.ownKeys[Constants::TOKEN_PROVIDER] = std::string(rawValue(provider));
  return event;
}

BaseEvent pageEvent(KifoEventType type, const PageContext& page) {
  BaseEvent event(type);
  EventPageInjected::inject(event.ownKeys, page);
  return event;
}

BaseEvent applicationErrorEvent(const Error& error) {
  BaseEvent event(KifoEventType::APPLICATION_ERROR);
  event.ownKeys[Constants::MESSAGE] = error.message;
  event.ownKeys[Constants::ERROR_TYPE] = error.domain;
  return event;
}

BaseEvent openedEvent(const AppCommunicationItem* item) {
  BaseEvent event(KifoEventType::INAPPOPENED);
  addItem(event.ownKeys, item);
  return event;
}

BaseEvent inAppMessageEvent(const AppCommunicationItem* item, const InAppAnswer& answer,
                            const PageContext& page) {
  BaseEvent event(KifoEventType::INAPPMESSAGERESPONSE);
  addItem(event.ownKeys, item);
  EventPageInjected::inject(event.ownKeys, page);
  addAnswer(event.ownKeys, answer, item);
  return event;
}

BaseEvent pushReceivedEvent(const PushCampaign& campaign) {
  return pushEvent(KifoEventType::PUSH_NOTIFICATION_RECEIVED, campaign);
}

BaseEvent pushClickedEvent(const PushCampaign& campaign, const PushButton& button) {
  BaseEvent event = pushEvent(KifoEventType::PUSH_NOTIFICATION_CLICKED, campaign);
  event.ownKeys[Constants::RESPONSE_TYPE] = button.id ? "BUTTON" : "SELF";
  event.ownKeys[Constants::RESPONSE_ID] = withoutCommas(button.id).value_or("");
  setOrErase(event.ownKeys, Constants::RESPONSE_TEXT, button.text);
  return event;
}

BaseEvent pushDismissedEvent(const PushCampaign& campaign) {
  BaseEvent event = pushEvent(KifoEventType::PUSH_NOTIFICATION_DISMISSED, campaign);
  event.ownKeys[Constants::RESPONSE_TYPE] = "SELF";
  return event;
}

BaseEvent permissionStatusEvent(KifoNotificationPermissionStatusType status) {
  BaseEvent event(status == KifoNotificationPermissionStatusType::DENIED
                      ? std::string(rawValue(KifoEventType::PUSH_NOTIFICATION_DENIED))
                      : kPermissionStatusEvent);
  event.ownKeys[Constants::STATUS] = std::string(rawValue(status));
  return event;
}

BaseEvent customEvent(std::string name, EventParameters hostParameters, const PageContext& page) {
  BaseEvent event(std::move(name));
  event.initialParameters = std::move(hostParameters);
  EventPageInjected::inject(event.initialParameters, page);
  return event;
}

}  // namespace kifo
