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

void InstallEvent::addOwnKeys(EventParameters& parameters) const {
  BaseEvent::addOwnKeys(parameters);
  parameters[Constants::ANONYMOUS] = anonymous_;
}

ActorChangeEvent::ActorChangeEvent(const std::string& oldActorId, std::string newActorId)
    : BaseEvent(KifoEventType::ACTOR_CHANGE), newActorId_(std::move(newActorId)) {
  actorId = Session::withoutCommas(oldActorId);
}

void ActorChangeEvent::addOwnKeys(EventParameters& parameters) const {
  BaseEvent::addOwnKeys(parameters);
  parameters[Constants::NEW_ACTOR_ID] = newActorId_;
}

void TokenChangeEvent::addOwnKeys(EventParameters& parameters) const {
  BaseEvent::addOwnKeys(parameters);
  parameters[Constants::TOKEN_PROVIDER] = std::string(rawValue(provider_));
}

void PageEvent::addOwnKeys(EventParameters& parameters) const {
  BaseEvent::addOwnKeys(parameters);
  EventPageInjected::inject(parameters, page_);
}

void ApplicationErrorEvent::addOwnKeys(EventParameters& parameters) const {
  BaseEvent::addOwnKeys(parameters);
  parameters[Constants::MESSAGE] = error_.message;
  parameters[Constants::ERROR_TYPE] = error_.domain;
}

void OpenedEvent::addOwnKeys(EventParameters& parameters) const {
  addItem(parameters, item_.get());
  BaseEvent::addOwnKeys(parameters);
}

void InAppMessageEvent::addOwnKeys(EventParameters& parameters) const {
  addItem(parameters, item_.get());
  EventPageInjected::inject(parameters, page_);
  addAnswer(parameters, answer_, item_.get());
  BaseEvent::addOwnKeys(parameters);
}

PushEvent::PushEvent(KifoEventType type, PushCampaign campaign, Response response, Text buttonId,
                     Text buttonText)
    : BaseEvent(type),
      campaign_(std::move(campaign)),
      response_(response),
      buttonId_(std::move(buttonId)),
      buttonText_(std::move(buttonText)) {
  scenario = campaign_.scenario.value_or("");
  const std::string addressee = Session::withoutCommas(campaign_.actorId.value_or(""));
  if (!addressee.empty()) actorId = addressee;
}

void PushEvent::addOwnKeys(EventParameters& parameters) const {
  if (response_ != Response::none) {
    parameters[Constants::RESPONSE_TYPE] = response_ == Response::button ? "BUTTON" : "SELF";
  }
  parameters[Constants::RESPONSE_ID] = withoutCommas(buttonId_).value_or("");
  if (buttonText_) parameters[Constants::RESPONSE_TEXT] = *buttonText_;
  parameters[Constants::STATUS] =
      std::string(rawValue(Session::shared().notificationPermissionStatus.load()));
  BaseEvent::addOwnKeys(parameters);
  setOrErase(parameters, Constants::CODE, campaign_.code);
  setOrErase(parameters, Constants::TYPE, campaign_.type);
  setOrErase(parameters, Constants::COMMUNICATION_NAME, campaign_.uuid);
  // Where the host has set no token of its own, the one that the push was sent to is the device's.
  auto& token = parameters[Constants::PUSH_TOKEN];
  if (token == "" && campaign_.pushToken) token = *campaign_.pushToken;
}

PermissionStatusEvent::PermissionStatusEvent(KifoNotificationPermissionStatusType status)
    : BaseEvent(status == KifoNotificationPermissionStatusType::DENIED
                    ? std::string(rawValue(KifoEventType::PUSH_NOTIFICATION_DENIED))
                    : kPermissionStatusEvent),
      status_(status) {}

void PermissionStatusEvent::addOwnKeys(EventParameters& parameters) const {
  BaseEvent::addOwnKeys(parameters);
  parameters[Constants::STATUS] = std::string(rawValue(status_));
}

EventParameters CustomEvent::initialParameters() {
  EventPageInjected::inject(hostParameters_, page_);
  return std::move(hostParameters_);
}

}  // namespace kifo
