#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/notifications/NotificationRecordFields.h"

namespace kifo {
namespace {

/// Takes title and body from `alert`; false when it holds neither.
bool readTexts(const UserInfo& alert, NotificationContent& content) {
  if (const std::string* body = alert.asText()) {
    content.body = *body;
    return true;
  }
  const auto title = textIn(alert, "title");
  const auto body = textIn(alert, "body");
  content.title = title.value_or("");
  content.body = body.value_or("");
  return title || body;
}

}  // namespace

NotificationContent contentOfPush(UserInfo userInfo) {
  NotificationContent content;
  if (!readTexts(userInfo["aps"]["alert"], content) &&
      !readTexts(userInfo["notification"], content) && userInfo.asMap()) {
    readTexts(userInfo, content);
  }
  content.userInfo = std::move(userInfo);
  return content;
}

std::optional<std::string> textIn(const UserInfo& userInfo, std::string_view key) {
  const std::string* text = userInfo[key].asText();
  return text ? std::optional(*text) : std::nullopt;
}

std::shared_ptr<NotificationAppCommunicationItem> campaignOf(const UserInfo& userInfo) {
  const auto data = textIn(userInfo, "data");
  return data ? decode<NotificationAppCommunicationItem>(std::string_view(*data)) : nullptr;
}

std::string description(const NotificationContent& content) {
  std::string keys;
  if (const UserInfo::Map* members = content.userInfo.asMap()) {
    for (const auto& [key, value] : *members) keys += (keys.empty() ? "" : ", ") + key;
  }
  return "<NotificationContent title: " + content.title + ", body: " + content.body +
         ", categoryIdentifier: " + content.categoryIdentifier +
         ", attachments: " + std::to_string(content.attachments.size()) + ", userInfo: [" + keys +
         "]>";
}

}  // namespace kifo
