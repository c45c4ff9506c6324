#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"

#include <utility>

namespace kifo {
namespace {

/// Takes title and body from `alert`; false when it holds neither.
bool readTexts(const UserInfo& alert, NotificationContent& content) {
  if (alert.is_string()) {
    content.body = alert.get<std::string>();
    return true;
  }
  const auto title = textIn(alert, "title");
  const auto body = textIn(alert, "body");
  content.title = title.value_or("");
  content.body = body.value_or("");
  return title || body;
}

const UserInfo& member(const UserInfo& object, const char* key) {
  static const UserInfo& none = *new UserInfo;
  if (!object.is_object()) return none;
  const auto found = object.find(key);
  return found == object.end() ? none : *found;
}

}  // namespace

NotificationContent contentOfPush(UserInfo userInfo) {
  NotificationContent content;
  if (!readTexts(member(member(userInfo, "aps"), "alert"), content) &&
      !readTexts(member(userInfo, "notification"), content)) {
    readTexts(userInfo.is_object() ? userInfo : UserInfo::object(), content);
  }
  content.userInfo = std::move(userInfo);
  return content;
}

std::optional<std::string> textIn(const UserInfo& userInfo, std::string_view key) {
  if (!userInfo.is_object()) return std::nullopt;
  const auto found = userInfo.find(key);
  if (found == userInfo.end() || !found->is_string()) return std::nullopt;
  return found->get<std::string>();
}

std::shared_ptr<NotificationAppCommunicationItem> campaignOf(const UserInfo& userInfo) {
  const auto data = textIn(userInfo, "data");
  return data ? decode<NotificationAppCommunicationItem>(std::string_view(*data)) : nullptr;
}

std::string description(const NotificationContent& content) {
  std::string keys;
  if (content.userInfo.is_object()) {
    for (const auto& [key, value] : content.userInfo.items()) {
      keys += (keys.empty() ? "" : ", ") + key;
    }
  }
  return "<NotificationContent title: " + content.title + ", body: " + content.body +
         ", categoryIdentifier: " + content.categoryIdentifier +
         ", attachments: " + std::to_string(content.attachments.size()) + ", userInfo: [" + keys +
         "]>";
}

}  // namespace kifo
