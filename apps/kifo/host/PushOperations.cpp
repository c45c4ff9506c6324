#include "apps/kifo/host/PushOperations.h"

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "apps/kifo/host/Host.h"
#include "apps/kifo/host/Operations.h"

namespace kifo::tool {
namespace {

using Action = std::function<void()>;

NotificationResponse response(Arguments fields) {
  NotificationResponse response;
  response.actionIdentifier = fields.optionalText("actionIdentifier")
                                  .value_or(NotificationResponse::defaultActionIdentifier);
  fields.finish();
  return response;
}

Action handleNotification(Arguments& arguments, Host& host) {
  const UserInfo userInfo = arguments.object("userInfo");
  const auto tapped = response(arguments.arguments("response"));
  const auto callback = arguments.flag("actionCallback", true)
                            ? actionCallback(host.output())
                            : NotificationManager::ActionCallback();
  return [=] { NotificationManager::handleNotification(userInfo, tapped, callback); };
}

/// The request as `{"identifier", "userInfo"}`; without a user info it has no content.
Action didReceive(Arguments& arguments, Host& host) {
  Arguments fields = arguments.arguments("value");
  NotificationRequest request;
  request.identifier = fields.optionalText("identifier").value_or("");
  if (fields.names("userInfo")) {
    request.content =
        std::make_shared<NotificationContent>(contentOfPush(UserInfo(fields.object("userInfo"))));
  }
  fields.finish();
  arguments.ignore("withContentHandler");
  return [request, handler = contentHandler(host.output())] {
    NotificationManager::didReceive(request, handler);
  };
}

Output::Line line(const NotificationContent& content) {
  auto attachments = Output::Line::array();
  for (const auto& each : content.attachments) {
    attachments.push_back({{"identifier", each.identifier}, {"path", each.path}});
  }
  return {{"title", content.title},
          {"body", content.body},
          {"categoryIdentifier", content.categoryIdentifier},
          {"attachments", attachments},
          {"userInfo", Output::Line::parse(jsonFromValue(content.userInfo))}};
}

}  // namespace

NotificationManager::ActionCallback actionCallback(const std::shared_ptr<Output>& output) {
  return [output](std::shared_ptr<AppCommunicationItemAction> action) {
    const std::string text = action ? encode(*action) : "null";
    output->line({{"callback", "actionCallback"}, {"action", Output::Line::parse(text)}});
  };
}

NotificationManager::ContentHandler contentHandler(const std::shared_ptr<Output>& output) {
  return [output](std::shared_ptr<const NotificationContent> content) {
    output->line({{"callback", "contentHandler"}, {"content", line(*content)}});
  };
}

void addPushOperations(Operations& all) {
  all["NotificationManager.refreshNotificationPermissionStatusType"] = [](Arguments&,
                                                                          Host&) -> Action {
    return &NotificationManager::refreshNotificationPermissionStatusType;
  };
  all["NotificationManager.handleNotification"] = handleNotification;
  all["NotificationManager.didReceive"] = didReceive;
}

}  // namespace kifo::tool
