#include <memory>
#include <utility>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "apps/kifo/host/Host.h"
#include "apps/kifo/host/Operations.h"

namespace kifo {

template <>
struct RecordFields<ScoreFieldModel> {
  static constexpr auto fields = std::tuple(field("value", &ScoreFieldModel::value),
                                            field("freeText", &ScoreFieldModel::freeText));
};
template <>
struct RecordFields<OpenEndedFieldModel> {
  static constexpr auto fields = std::tuple(field("freeText", &OpenEndedFieldModel::freeText));
};
template <>
struct RecordFields<ChoiseFieldModel> {
  static constexpr auto fields = std::tuple(field("choiseId", &ChoiseFieldModel::choiseId),
                                            field("text", &ChoiseFieldModel::text),
                                            field("freeText", &ChoiseFieldModel::freeText));
};

namespace tool {
namespace {

using Action = std::function<void()>;
using Screen = std::shared_ptr<KifoViewController>;
using Button = AppCommunicationItemButton;
using Item = AppCommunicationItem;
using Events = KifoEventManager;

Screen screenIn(Arguments& arguments, Host& host) {
  const auto name = arguments.optionalText("controller");
  return name ? host.screen(*name) : nullptr;
}

template <class Record>
nlohmann::json json(const std::shared_ptr<Record>& record) {
  return record ? nlohmann::json::parse(encode(*record)) : nlohmann::json();
}

Events::ButtonAction buttonCallback(Arguments& arguments, Host& host) {
  if (!arguments.flag("onActionRequired", true)) return {};
  return [output = host.output()](std::shared_ptr<Button> button) {
    output->line({{"callback", "onActionRequired"}, {"button", json(button)}});
  };
}

Events::ItemAction itemCallback(Arguments& arguments, Host& host) {
  if (!arguments.flag("onActionRequired", true)) return {};
  return [output = host.output()](std::shared_ptr<Item> item) {
    output->line({{"callback", "onActionRequired"}, {"item", json(item)}});
  };
}

Operation plain(void (*operation)()) {
  return [operation](Arguments&, Host&) -> Action { return operation; };
}

Operation page(void (*operation)(std::shared_ptr<ViewController>, std::optional<std::string>)) {
  return [operation](Arguments& arguments, Host& host) -> Action {
    return [operation, screen = screenIn(arguments, host),
            name = arguments.optionalText("pageName")] { operation(screen, name); };
  };
}

Operation withUserInfo(void (*operation)(const UserInfo&)) {
  return [operation](Arguments& arguments, Host&) -> Action {
    return [operation, userInfo = UserInfo(arguments.object("userInfo"))] { operation(userInfo); };
  };
}

Action sendInstallEvent(Arguments& arguments, Host&) {
  return [id = arguments.optionalText("value")] { Events::sendInstallEvent(id); };
}

Action sendTokenChangeEvent(Arguments& arguments, Host&) {
  const auto provider = arguments.enumeration<TokenProviderType>("tokenProvider");
  return [provider] { Events::sendTokenChangeEvent(provider); };
}

Action sendChangeActorEvent(Arguments& arguments, Host&) {
  const auto oldId = arguments.text("oldActorId");
  const auto newId = arguments.text("newActorId");
  return [=] { Events::sendChangeActorEvent(oldId, newId); };
}

Action sendApplicationErrorEvent(Arguments& arguments, Host&) {
  Arguments fields = arguments.arguments("error");
  Error error;
  error.domain = fields.text("domain");
  error.message = fields.text("message");
  if (fields.has("code")) {
    error.code = static_cast<int>(fields.integer("code", INT32_MIN, INT32_MAX));
  }
  fields.ignore("code");
  fields.finish();
  return [error] { Events::sendApplicationErrorEvent(error); };
}

Action sendLoginEvent(Arguments& arguments, Host& host) {
  const auto screen = screenIn(arguments, host);
  const auto pageName = arguments.optionalText("pageName");
  const auto parameters = arguments.object("initialParameters");
  return [=] { Events::sendLoginEvent(screen, pageName, parameters); };
}

/// With the label "controller", be its value null, it is the form with a screen.
Action sendEvent(Arguments& arguments, Host& host) {
  const auto name = arguments.text("eventName");
  const auto pageName = arguments.optionalText("pageName");
  const auto parameters = arguments.object("initialParameters");
  if (!arguments.names("controller")) {
    const auto callback = itemCallback(arguments, host);
    return [=] { Events::sendEvent(name, pageName, parameters, callback); };
  }
  const auto screen = screenIn(arguments, host);
  const auto callback = buttonCallback(arguments, host);
  return [=] { Events::sendEvent(screen, name, pageName, parameters, callback); };
}

struct Campaign {
  std::string pushToken, actorId, name, code, scenario;

  explicit Campaign(Arguments& arguments)
      : pushToken(arguments.text("pushToken")),
        actorId(arguments.text("actorId")),
        name(arguments.text("communicationName")),
        code(arguments.text("code")),
        scenario(arguments.text("scenario")) {}
};

Action sendReceivedEvent(Arguments& arguments, Host&) {
  return [c = Campaign(arguments)] {
    Events::sendPushNotificationReceivedEvent(c.pushToken, c.actorId, c.name, c.code, c.scenario);
  };
}

Action sendClickedEvent(Arguments& arguments, Host&) {
  const auto buttonName = arguments.optionalText("buttonName");
  const auto buttonText = arguments.optionalText("buttonText");
  return [=, c = Campaign(arguments)] {
    Events::sendPushNotificationClickedEvent(c.pushToken, c.actorId, c.name, c.code, c.scenario,
                                             buttonName, buttonText);
  };
}

Action sendOpenedEvent(Arguments& arguments, Host& host) {
  const auto item = arguments.record<Item>("event");
  const auto screen = screenIn(arguments, host);
  const auto pageName = arguments.optionalText("pageName");
  if (!item) throw BadLine("\"event\" is missing");
  return [=] { Events::sendOpenedEvent(item, screen, pageName); };
}

template <class Model>
std::optional<Model> model(Arguments& arguments, const char* label) {
  const auto read = arguments.record<Model>(label);
  return read ? std::optional(*read) : std::nullopt;
}

Action sendInAppMessageEvent(Arguments& arguments, Host& host) {
  const auto item = arguments.record<Item>("event");
  const auto body = arguments.record<AppCommunicationItemAction>("body");
  const auto choice = arguments.record<Button>("choice");
  const auto button = arguments.record<Button>("button");
  const auto scoreField = model<ScoreFieldModel>(arguments, "scoreField");
  const auto openEndedField = model<OpenEndedFieldModel>(arguments, "openEndedField");
  const auto choiseField = model<ChoiseFieldModel>(arguments, "choiseField");
  const auto screen = screenIn(arguments, host);
  const auto pageName = arguments.optionalText("pageName");
  return [=] {
    Events::sendInAppMessageEvent(item, body, choice, button, scoreField, openEndedField,
                                  choiseField, screen, pageName);
  };
}

Action handlePopupAction(Arguments& arguments, Host& host) {
  const auto screen = screenIn(arguments, host);
  const auto pageName = arguments.optionalText("pageName");
  const auto item = arguments.record<Item>("action");
  const bool isFromNotification = arguments.flag("fromNotification", false);
  const auto callback = buttonCallback(arguments, host);
  if (!item) throw BadLine("\"action\" is missing");
  return [=] { Events::handlePopupAction(screen, pageName, item, isFromNotification, callback); };
}

}  // namespace

void addEventOperations(Operations& all) {
  const auto add = [&](const std::string& name, Operation operation) {
    all["KifoEventManager." + name] = std::move(operation);
  };
  add("sendInstallEvent", sendInstallEvent);
  add("sendInitializeEvent", plain(&Events::sendInitializeEvent));
  add("sendTokenChangeEvent", sendTokenChangeEvent);
  add("sendChangeActorEvent", sendChangeActorEvent);
  add("sendAppForegroundEvent", plain(&Events::sendAppForegroundEvent));
  add("sendAppBackgroundEvent", plain(&Events::sendAppBackgroundEvent));
  add("sendPageInEvent", page(&Events::sendPageInEvent));
  add("sendPageOutEvent", page(&Events::sendPageOutEvent));
  add("sendApplicationErrorEvent", sendApplicationErrorEvent);
  add("sendLoginEvent", sendLoginEvent);
  add("sendEvent", sendEvent);
  add("sendPushNotificationReceivedEvent", sendReceivedEvent);
  add("sendPushNotificationClickedEvent", sendClickedEvent);
  add("sendPushNotificationDismissedEvent",
      withUserInfo(&Events::sendPushNotificationDismissedEvent));
  add("sendNotificationPermissionStatusEvent",
      withUserInfo(&Events::sendNotificationPermissionStatusEvent));
  add("sendOpenedEvent", sendOpenedEvent);
  add("sendInAppMessageEvent", sendInAppMessageEvent);
  add("handlePopupAction", handlePopupAction);
}

}  // namespace tool
}  // namespace kifo
