#include "testing/server/EventText.h"

#include <ctime>
#include <set>

namespace kifo::testing {
namespace {

const std::set<std::string>& commonKeys() {
  static const auto& keys =
      *new std::set<std::string>{"push_token",        "apns_token",
                                 "device_id",         "requestId",
                                 "channel",           "sync",
                                 "device_os",         "phone_brand",
                                 "scenario",          "phone_model",
                                 "device_os_version", "sdk_version",
                                 "time_zone",         "timestamp",
                                 "application_name",  "free_disk",
                                 "total_disk",        "battery",
                                 "network_status",    "name",
                                 "actorId",           "push_notification_permission_status"};
  return keys;
}

}  // namespace

std::string clockTime(std::int64_t millisecondsSince1970) {
  const auto seconds = static_cast<std::time_t>(millisecondsSince1970 / 1000);
  std::tm local{};
  localtime_r(&seconds, &local);
  char text[16];
  std::strftime(text, sizeof text, "%H:%M:%S", &local);
  return text;
}

std::string particulars(const nlohmann::json& event, const std::string& separator) {
  std::string text;
  for (const auto& [key, value] : event.items()) {
    if (commonKeys().contains(key)) continue;
    if (!text.empty()) text += separator;
    text += key + "=" + (value.is_string() ? value.get<std::string>() : value.dump());
  }
  return text;
}

}  // namespace kifo::testing
