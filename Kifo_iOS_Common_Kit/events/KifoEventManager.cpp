#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"

#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"
#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/events/EventKinds.h"
#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManagerLogic.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

static_assert(KifoEventManagerLogic<KifoEventManager>);

namespace {

/// From an event to its campaign. Kept for compatibility.
constexpr auto kPopupDelay = SerialQueue::Duration(0.5);

void print(std::string_view message) {
  Console::print(KifoEventManager::LOG_TAG, message);
}

/// Advice on the console; no event is held back by it. Kept for compatibility.
void sendGate(const Session& session) {
  const auto answer = session.appCommunication();
  if (answer && answer->configuration && answer->configuration->stopAllEvents) {
    print("all events stopped");
  }
  if (session.sendEventStatus == SendEventStatus::DISABLED) print("send events stopped");
}

bool isBlocked(const Session& session, const std::string& eventName) {
  const auto answer = session.appCommunication();
  if (!answer || !answer->blockedEvents) return false;
  return std::ranges::any_of(*answer->blockedEvents,
                             [&](const auto& entry) { return entry->name == eventName; });
}

void inspectComposed(const std::string& name, const std::string& requestId,
                     const EventParameters& dictionary) {
  KIFO_INSPECT(
      "composed",
      {{"event", name}, {"requestId", requestId}, {"parameters", jsonFromValue(dictionary)}});
}

/// The event's dictionary, composed by whichever thread first needs it: tools that follow see it
/// then. An inspector sees it now.
RequestParameters parametersOf(BaseEvent event, const std::string& requestId) {
  if (hasInspector()) {
    const std::string name = event.name;
    const auto dictionary = std::make_shared<const EventParameters>(compose(std::move(event)));
    inspectComposed(name, requestId, *dictionary);
    return {dictionary};
  }
  if (!Watch::isOn.load(std::memory_order_relaxed)) {
    return {[event = std::move(event)] { return compose(event); }};
  }
  // The name by which a tool knows the request, also if it is never composed.
  tellTools({"event", {{"event", event.name}, {"requestId", requestId}}});
  return {[event = std::move(event), requestId] {
    EventParameters dictionary = compose(event);
    inspectComposed(event.name, requestId, dictionary);
    return dictionary;
  }};
}

bool isDropped(const Runtime& runtime, const BaseEvent& event) {
  if (!runtime.consent.isWithheld()) return false;
  runtime.counters->add(Counter::composed);
  runtime.counters->add(Counter::droppedWithoutConsent);
  KIFO_INSPECT("dropped", {{"event", event.name}, {"reason", "no consent"}});
  return true;
}

/// The path of every event behind the send gate: block filter, request id, snapshot, hand-over.
void dispatch(const std::shared_ptr<Runtime>& runtime, BaseEvent event, bool isNotificationEvent) {
  if (isDropped(*runtime, event)) return;
  refreshNotificationPermissionStatus(runtime);
  if (isBlocked(runtime->session, event.name)) {
    runtime->counters->add(Counter::blocked);
    KIFO_INSPECT("blocked", {{"event", event.name}});
    return;
  }
  const std::string requestId = Platform::current()->identifiers->uuid();
  event.snapshot = EventSnapshot::take(*runtime);
  const auto sender = event.snapshot.identity;
  ServiceClient::make(runtime)->sendEvent({}, parametersOf(std::move(event), requestId), sender,
                                          requestId, isNotificationEvent, {});
  print("logEvent - requestId - " + requestId);
}

void send(BaseEvent event, bool isNotificationEvent = false) {
  const auto runtime = Runtime::current();
  sendGate(runtime->session);
  dispatch(runtime, std::move(event), isNotificationEvent);
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

/// A campaign that is shown half a second after its event.
struct DuePopup {
  std::shared_ptr<Runtime> runtime;
  std::weak_ptr<ViewController> controller;
  std::optional<std::string> pageName;  ///< Known from the start: the screen may go.
  std::shared_ptr<AppCommunicationItem> item;
  PopupManager::Handler handler;
};

void show(PopupType type, const DuePopup& due) {
  if (!rules::hasConsent(*due.runtime, *due.item)) return;
  const auto controller = due.controller.lock();
  if (!controller) {
    count(Counter::popupsRefusedNoScreen);
    rules::inspect(*due.item, "screen gone", "");
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
  rules::inspect(item ? *item : AppCommunicationItem(), outcome, reason);
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
    count(isEmpty(answer) ? Counter::popupsClosed : Counter::popupsAnswered);
    const auto page = pageName ? PageContext::named(std::move(*pageName))
                               : PageContext(controller.get(), std::nullopt);
    send(inAppMessageEvent(item.get(), answer, page));
  }
};

}  // namespace

// The SDK's own events ---------------------------------------------------------------------------

void KifoEventManager::sendInstallEvent(const std::optional<std::string>& localActorId) {
  send(installEvent(localActorId.value_or("").empty()));
}

void KifoEventManager::sendInitializeEvent() {
  send(BaseEvent(KifoEventType::INITIALIZE));
}

void KifoEventManager::sendTokenChangeEvent(TokenProviderType tokenProvider) {
  send(tokenChangeEvent(tokenProvider));
}

void KifoEventManager::sendChangeActorEvent(const std::string& oldActorId,
                                            const std::string& newActorId) {
  send(actorChangeEvent(oldActorId, newActorId));
}

void KifoEventManager::sendAppForegroundEvent() {
  send(BaseEvent(KifoEventType::APP_FOREGROUND));
}

void KifoEventManager::sendAppBackgroundEvent() {
  send(BaseEvent(KifoEventType::APP_BACKGROUND));
}

void KifoEventManager::sendApplicationErrorEvent(const Error& error) {
  send(applicationErrorEvent(error));
}

// Pages ------------------------------------------------------------------------------------------

void KifoEventManager::sendPageInEvent(std::shared_ptr<ViewController> controller,
                                       std::optional<std::string> pageName) {
  const auto runtime = Runtime::current();
  sendGate(runtime->session);
  if (!runtime->consent.isWithheld()) runtime->inAppTrigger->refresh(runtime);
  runtime->popupGate->askAgain();
  dispatch(runtime, pageEvent(KifoEventType::PAGE_IN, {controller.get(), std::move(pageName)}),
           false);
}

void KifoEventManager::sendPageOutEvent(std::shared_ptr<ViewController> controller,
                                        std::optional<std::string> pageName) {
  send(pageEvent(KifoEventType::PAGE_OUT, {controller.get(), std::move(pageName)}));
}

// The host's events ------------------------------------------------------------------------------

void KifoEventManager::sendLoginEvent(std::shared_ptr<ViewController> controller,
                                      std::optional<std::string> pageName,
                                      EventParameters initialParameters) {
  send(customEvent(std::string(rawValue(KifoEventType::LOGIN)), std::move(initialParameters),
                   {controller.get(), std::move(pageName)}));
}

void KifoEventManager::sendEvent(std::shared_ptr<ViewController> controller,
                                 const std::string& eventName, std::optional<std::string> pageName,
                                 EventParameters initialParameters, ButtonAction onActionRequired) {
  send(customEvent(eventName, std::move(initialParameters), {controller.get(), pageName}));
  const auto runtime = Runtime::current();
  if (runtime->consent.isWithheld()) return;
  if (!controller) {
    return runtime->inAppTrigger->eventSent(runtime, eventName, [](const auto& item) {
      count(Counter::popupsDue);
      count(Counter::popupsRefusedNoScreen);
      inspect(item.get(), "refused", "controller is nil, couldn't call handlePopupAction");
      print("controller is nil, couldn't call handlePopupAction");
    });
  }
  runtime->inAppTrigger->eventSent(
      runtime, eventName,
      [screen = std::weak_ptr(controller), pageName,
       onActionRequired = std::move(onActionRequired)](const auto& item) {
        const auto stillThere = screen.lock();
        if (!stillThere) {
          count(Counter::popupsDue);
          count(Counter::popupsRefusedNoScreen);
          return inspect(item.get(), "screen gone");
        }
        handlePopupAction(stillThere, pageName, item, false, onActionRequired);
      });
}

void KifoEventManager::sendEvent(const std::string& eventName, std::optional<std::string> pageName,
                                 EventParameters initialParameters, ItemAction onActionRequired) {
  send(customEvent(eventName, std::move(initialParameters), {nullptr, std::move(pageName)}));
  const auto runtime = Runtime::current();
  if (runtime->consent.isWithheld()) return;
  runtime->inAppTrigger->eventSent(
      runtime, eventName, [onActionRequired = std::move(onActionRequired)](const auto& item) {
        if (!item->type) {
          inspect(item.get(), "refused", "couldn't get action type!");
          return print("couldn't get action type!");
        }
        inspect(item.get(), "handed to the host");
        print("action: " + *item->type);
        callHost(LOG_TAG, onActionRequired, item);
      });
}

// Pushes -----------------------------------------------------------------------------------------

void KifoEventManager::sendPushNotificationReceivedEvent(const std::string&,
                                                         const std::string& actorId,
                                                         const std::string& communicationName,
                                                         const std::string& code,
                                                         const std::string& scenario) {
  send(pushReceivedEvent({actorId, communicationName, code, scenario, std::nullopt}), true);
}

void KifoEventManager::sendPushNotificationClickedEvent(
    const std::string&, const std::string& actorId, const std::string& communicationName,
    const std::string& code, const std::string& scenario,
    const std::optional<std::string>& buttonName, const std::optional<std::string>& buttonText) {
  send(pushClickedEvent({actorId, communicationName, code, scenario, std::nullopt},
                        {buttonName, buttonText}),
       true);
}

void KifoEventManager::sendPushNotificationDismissedEvent(const UserInfo& userInfo) {
  send(pushDismissedEvent(campaignOf(userInfo)), true);
}

void KifoEventManager::sendNotificationPermissionStatusEvent(const UserInfo& userInfo) {
  send(permissionStatusEvent(statusOf(userInfo)), true);
}

// Popups -----------------------------------------------------------------------------------------

void KifoEventManager::sendOpenedEvent(std::shared_ptr<AppCommunicationItem> event,
                                       std::shared_ptr<ViewController>,
                                       std::optional<std::string>) {
  send(openedEvent(event.get()));
}

void KifoEventManager::sendInAppMessageEvent(
    std::shared_ptr<AppCommunicationItem> event, std::shared_ptr<AppCommunicationItemAction> body,
    std::shared_ptr<AppCommunicationItemButton> choice,
    std::shared_ptr<AppCommunicationItemButton> button, std::optional<ScoreFieldModel> scoreField,
    std::optional<OpenEndedFieldModel> openEndedField, std::optional<ChoiseFieldModel> choiseField,
    std::shared_ptr<ViewController> controller, std::optional<std::string> pageName) {
  send(inAppMessageEvent(event.get(),
                         {std::move(body), std::move(choice), std::move(button),
                          std::move(scoreField), std::move(openEndedField), std::move(choiseField)},
                         {controller.get(), std::move(pageName)}));
}

void KifoEventManager::handlePopupAction(std::shared_ptr<ViewController> controller,
                                         std::optional<std::string> pageName,
                                         std::shared_ptr<AppCommunicationItem> action, bool,
                                         ButtonAction onActionRequired) {
  const std::string type = action ? action->type.value_or("") : "";
  if (action) print("handlePopupAction: " + type);
  count(Counter::popupsDue);
  const auto kind = popupType(type);
  if (!kind) {
    count(Counter::popupsRefusedUnknownType);
    inspect(action.get(), "refused", "couldn't get a actionType for popup");
    return print("couldn't get a actionType for popup");
  }
  DuePopup due{Runtime::current(), controller,
               PageContext(controller.get(), std::move(pageName)).name, std::move(action),
               [onActionRequired = std::move(onActionRequired)](const auto& button) {
                 callHost(LOG_TAG, onActionRequired, button);
               }};
  Platform::current()->mainQueue->schedule(
      kPopupDelay, [kind = *kind, due = std::move(due)] { show(kind, due); });
}

std::shared_ptr<InAppReporter> KifoEventManager::reporter() {
  static const auto& only = *new std::shared_ptr<InAppReporter>(std::make_shared<Reporter>());
  return only;
}

}  // namespace kifo
