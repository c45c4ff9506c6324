#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"

#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/events/EventKinds.h"
#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManagerLogic.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"

namespace kifo {

static_assert(KifoEventManagerLogic<KifoEventManager>);

namespace {

constexpr auto kPopupDelay = SerialQueue::Duration(0.5);

void print(std::string_view message) {
  static const std::string& tag = *new std::string(logTag("KifoEventManager"));
  Console::print(tag, message);
}

/// Advice on the console; no event is held back by it.
void sendGate() {
  const auto answer = Session::shared().appCommunication();
  if (answer && answer->configuration && answer->configuration->stopAllEvents) {
    print("all events stopped");
  }
  if (Session::shared().sendEventStatus == SendEventStatus::DISABLED) print("send events stopped");
}

bool isBlocked(const std::string& eventName) {
  const auto answer = Session::shared().appCommunication();
  if (!answer || !answer->blockedEvents) return false;
  return std::ranges::any_of(*answer->blockedEvents,
                             [&](const auto& entry) { return entry->name == eventName; });
}

/// The event's dictionary, made when it is first needed and not on the caller's thread; at once
/// where an inspector wants to see it.
ServiceClient::Composition compositionOf(std::shared_ptr<BaseEvent> event,
                                         const std::string& requestId) {
  if (!Platform::current()->inspector)
    return [event = std::move(event)] { return event->parameters(); };
  const std::string name = event->name;
  const EventParameters parameters = event->parameters();
  KIFO_INSPECT(
      "composed",
      {{"event", name}, {"requestId", requestId}, {"parameters", jsonFromValue(parameters)}});
  return [parameters] { return parameters; };
}

/// The way of every event, after the gate.
void dispatch(std::shared_ptr<BaseEvent> event, bool isNotificationEvent) {
  refreshNotificationPermissionStatus();
  if (isBlocked(event->name)) {
    KIFO_INSPECT("blocked", {{"event", event->name}});
    return;
  }
  const std::string requestId = Platform::current()->identifiers->uuid();
  event->moment = EventMoment::now();
  ServiceClient::make()->sendEvent({}, compositionOf(std::move(event), requestId), requestId,
                                   isNotificationEvent, {});
  print("logEvent - requestId - " + requestId);
}

template <class Event>
void send(Event event, bool isNotificationEvent = false) {
  sendGate();
  dispatch(std::make_shared<Event>(std::move(event)), isNotificationEvent);
}

PushCampaign campaignOf(const UserInfo& userInfo) {
  const std::string* data = userInfo["data"].asText();
  const auto campaign = data ? decode<PushCampaign>(std::string_view(*data)) : nullptr;
  return campaign ? *campaign : PushCampaign();
}

KifoNotificationPermissionStatusType statusOf(const UserInfo& userInfo) {
  const std::string* status = userInfo["status"].asText();
  return fromRawValue<KifoNotificationPermissionStatusType>(status ? *status : "")
      .value_or(KifoNotificationPermissionStatusType::UNKNOWN);
}

/// A campaign on its way to the screen, half a second from its event.
struct DuePopup {
  std::weak_ptr<ViewController> controller;
  std::optional<std::string> pageName;
  std::shared_ptr<AppCommunicationItem> item;
  PopupManager::Handler handler;
};

void show(PopupType type, const DuePopup& due) {
  const auto controller = due.controller.lock();
  if (!controller) {
    KIFO_INSPECT("campaign", {{"uuid", due.item->uuid.value_or("")}, {"outcome", "screen gone"}});
    return;
  }
  PopupManager manager(KifoEventManager::reporter());
  switch (type) {
    case PopupType::popup:
      return manager.showNotificationPopUpWindow(controller, due.pageName, due.item, due.handler);
    case PopupType::survey:
      return manager.showNotificationSurveyPopUpRadioGroupWindow(controller, due.pageName, due.item,
                                                                 due.handler);
    case PopupType::emoji:
      return manager.showNotificationEmojiPopUpWindow(controller, due.pageName, due.item,
                                                      due.handler);
    case PopupType::score:
      return manager.showNotificationScorePopUpWindow(controller, due.pageName, due.item,
                                                      due.handler);
    case PopupType::openEnded:
      return manager.showNotificationOpenEndedPopUpWindow(controller, due.pageName, due.item,
                                                          due.handler);
  }
}

bool isEmpty(const InAppAnswer& answer) {
  return !answer.body && !answer.choice && !answer.button && !answer.scoreField &&
         !answer.openEndedField && !answer.choiseField;
}

/// What became of a campaign, and for what reason.
void inspect(const AppCommunicationItem* item, const char* outcome, const char* reason = "") {
  KIFO_INSPECT("campaign", {{"uuid", item ? item->uuid.value_or("") : ""},
                            {"type", item ? item->type.value_or("") : ""},
                            {"outcome", outcome},
                            {"reason", reason}});
}

class Reporter final : public InAppReporter {
 public:
  void opened(std::shared_ptr<AppCommunicationItem> item,
              std::shared_ptr<ViewController> controller,
              std::optional<std::string> pageName) override {
    KifoEventManager::sendOpenedEvent(std::move(item), std::move(controller), std::move(pageName));
  }
  void answered(std::shared_ptr<AppCommunicationItem> item, InAppAnswer answer,
                std::shared_ptr<ViewController> controller,
                std::optional<std::string> pageName) override {
    inspect(item.get(), isEmpty(answer) ? "closed" : "answered");
    KifoEventManager::sendInAppMessageEvent(
        std::move(item), answer.body, answer.choice, answer.button, answer.scoreField,
        answer.openEndedField, answer.choiseField, std::move(controller), std::move(pageName));
  }
};

}  // namespace

// The SDK's own events ---------------------------------------------------------------------------

void KifoEventManager::sendInstallEvent(const std::optional<std::string>& localActorId) {
  send(InstallEvent(localActorId.value_or("").empty()));
}

void KifoEventManager::sendInitializeEvent() {
  send(BaseEvent(KifoEventType::INITIALIZE));
}

void KifoEventManager::sendTokenChangeEvent(TokenProviderType tokenProvider) {
  send(TokenChangeEvent(tokenProvider));
}

void KifoEventManager::sendChangeActorEvent(const std::string& oldActorId,
                                            const std::string& newActorId) {
  send(ActorChangeEvent(oldActorId, newActorId));
}

void KifoEventManager::sendAppForegroundEvent() {
  send(BaseEvent(KifoEventType::APP_FOREGROUND));
}

void KifoEventManager::sendAppBackgroundEvent() {
  send(BaseEvent(KifoEventType::APP_BACKGROUND));
}

void KifoEventManager::sendApplicationErrorEvent(const Error& error) {
  send(ApplicationErrorEvent(error));
}

// Pages ------------------------------------------------------------------------------------------

void KifoEventManager::sendPageInEvent(std::shared_ptr<ViewController> controller,
                                       std::optional<std::string> pageName) {
  sendGate();
  InAppTrigger::shared().refresh();
  dispatch(std::make_shared<PageEvent>(KifoEventType::PAGE_IN,
                                       PageContext(controller.get(), std::move(pageName))),
           false);
}

void KifoEventManager::sendPageOutEvent(std::shared_ptr<ViewController> controller,
                                        std::optional<std::string> pageName) {
  send(PageEvent(KifoEventType::PAGE_OUT, {controller.get(), std::move(pageName)}));
}

// The host's events ------------------------------------------------------------------------------

void KifoEventManager::sendLoginEvent(std::shared_ptr<ViewController> controller,
                                      std::optional<std::string> pageName,
                                      EventParameters initialParameters) {
  send(CustomEvent(std::string(rawValue(KifoEventType::LOGIN)), std::move(initialParameters),
                   {controller.get(), std::move(pageName)}));
}

void KifoEventManager::sendEvent(std::shared_ptr<ViewController> controller,
                                 const std::string& eventName, std::optional<std::string> pageName,
                                 EventParameters initialParameters, ButtonAction onActionRequired) {
  send(CustomEvent(eventName, std::move(initialParameters), {controller.get(), pageName}));
  const bool hasController = controller != nullptr;
  InAppTrigger::shared().eventSent(
      eventName, [screen = std::weak_ptr(controller), hasController, pageName,
                  onActionRequired = std::move(onActionRequired)](const auto& item) {
        const auto stillThere = screen.lock();
        if (!hasController) {
          inspect(item.get(), "refused", "controller is nil, couldn't call handlePopupAction");
          print("controller is nil, couldn't call handlePopupAction");
        } else if (stillThere) {
          handlePopupAction(stillThere, pageName, item, false, onActionRequired);
        }
      });
}

void KifoEventManager::sendEvent(const std::string& eventName, std::optional<std::string> pageName,
                                 EventParameters initialParameters, ItemAction onActionRequired) {
  send(CustomEvent(eventName, std::move(initialParameters), {nullptr, std::move(pageName)}));
  InAppTrigger::shared().eventSent(
      eventName, [onActionRequired = std::move(onActionRequired)](const auto& item) {
        if (!item->type) return print("couldn't get action type!");
        inspect(item.get(), "handed to the host");
        print("action: " + *item->type);
        callHost(logTag("KifoEventManager"), onActionRequired, item);
      });
}

// Pushes -----------------------------------------------------------------------------------------

void KifoEventManager::sendPushNotificationReceivedEvent(const std::string& pushToken,
                                                         const std::string& actorId,
                                                         const std::string& communicationName,
                                                         const std::string& code,
                                                         const std::string& scenario) {
  send(PushEvent(KifoEventType::PUSH_NOTIFICATION_RECEIVED,
                 {pushToken, actorId, communicationName, code, scenario, std::nullopt},
                 PushEvent::Response::none),
       true);
}

void KifoEventManager::sendPushNotificationClickedEvent(
    const std::string& pushToken, const std::string& actorId, const std::string& communicationName,
    const std::string& code, const std::string& scenario,
    const std::optional<std::string>& buttonName, const std::optional<std::string>& buttonText) {
  const auto response = buttonName ? PushEvent::Response::button : PushEvent::Response::self;
  send(PushEvent(KifoEventType::PUSH_NOTIFICATION_CLICKED,
                 {pushToken, actorId, communicationName, code, scenario, std::nullopt}, response,
                 buttonName, buttonText),
       true);
}

void KifoEventManager::sendPushNotificationDismissedEvent(const UserInfo& userInfo) {
  send(PushEvent(KifoEventType::PUSH_NOTIFICATION_DISMISSED, campaignOf(userInfo),
                 PushEvent::Response::self),
       true);
}

void KifoEventManager::sendNotificationPermissionStatusEvent(const UserInfo& userInfo) {
  send(PermissionStatusEvent(statusOf(userInfo)), true);
}

// Popups -----------------------------------------------------------------------------------------

void KifoEventManager::sendOpenedEvent(std::shared_ptr<AppCommunicationItem> event,
                                       std::shared_ptr<ViewController>,
                                       std::optional<std::string>) {
  send(OpenedEvent(event.get()));
}

void KifoEventManager::sendInAppMessageEvent(
    std::shared_ptr<AppCommunicationItem> event, std::shared_ptr<AppCommunicationItemAction> body,
    std::shared_ptr<AppCommunicationItemButton> choice,
    std::shared_ptr<AppCommunicationItemButton> button, std::optional<ScoreFieldModel> scoreField,
    std::optional<OpenEndedFieldModel> openEndedField, std::optional<ChoiseFieldModel> choiseField,
    std::shared_ptr<ViewController> controller, std::optional<std::string> pageName) {
  send(InAppMessageEvent(event.get(),
                         {std::move(body), std::move(choice), std::move(button),
                          std::move(scoreField), std::move(openEndedField), std::move(choiseField)},
                         {controller.get(), std::move(pageName)}));
}

void KifoEventManager::handlePopupAction(std::shared_ptr<ViewController> controller,
                                         std::optional<std::string> pageName,
                                         std::shared_ptr<AppCommunicationItem> action, bool,
                                         ButtonAction onActionRequired) {
  const std::string type = action->type.value_or("");
  print("handlePopupAction: " + type);
  const auto kind = popupType(type);
  if (!kind) {
    inspect(action.get(), "refused", "couldn't get a actionType for popup");
    return print("couldn't get a actionType for popup");
  }
  DuePopup due{controller, std::move(pageName), std::move(action),
               [onActionRequired = std::move(onActionRequired)](const auto& button) {
                 callHost(logTag("KifoEventManager"), onActionRequired, button);
               }};
  Platform::current()->mainQueue->schedule(
      kPopupDelay, [kind = *kind, due = std::move(due)] { show(kind, due); });
}

std::shared_ptr<InAppReporter> KifoEventManager::reporter() {
  static const auto& only = *new std::shared_ptr<InAppReporter>(std::make_shared<Reporter>());
  return only;
}

}  // namespace kifo
