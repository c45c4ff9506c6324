#include "testing/server/ReceivedRequest.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ctime>
#include <set>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::testing {

namespace {

std::string decoded(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned byte = 0;
    if (text[i] == '%' && i + 2 < text.size() &&
        std::from_chars(text.data() + i + 1, text.data() + i + 3, byte, 16).ptr ==
            text.data() + i + 3) {
      result += static_cast<char>(byte);
      i += 2;
    } else {
      result += text[i] == '+' ? ' ' : text[i];
    }
  }
  return result;
}

/// The keys that every event carries.
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

bool ReceivedRequest::NameLess::operator()(std::string_view left, std::string_view right) const {
  const int order = strncasecmp(left.data(), right.data(), std::min(left.size(), right.size()));
  return order != 0 ? order < 0 : left.size() < right.size();
}

void ReceivedRequest::complete() {
  time = std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
             .count();
  if (const auto start = target.find('?'); start != std::string::npos) {
    query = parseQuery(std::string_view(target).substr(start + 1));
  }
  json = valueFromJson(body);
}

std::string ReceivedRequest::header(std::string_view name) const {
  const auto found = headers.find(name);
  return found == headers.end() ? "" : found->second;
}

std::string ReceivedRequest::text(const char* key) const {
  const auto* found = json ? (*json)[key].asText() : nullptr;
  return found != nullptr ? *found : "";
}

Value ReceivedRequest::toValue() const {
  return {{"number", number},
          {"time", time},
          {"method", method},
          {"path", path},
          {"query", Value::Map(query.begin(), query.end())},
          {"headers", Value::Map(headers.begin(), headers.end())},
          {"body", json.value_or(body)},
          {"remotePort", remotePort},
          {"status", status}};
}

std::string ReceivedRequest::clockTime() const {
  const auto seconds = static_cast<std::time_t>(time / 1000);
  std::tm local{};
  localtime_r(&seconds, &local);
  char text[16];
  std::strftime(text, sizeof text, "%H:%M:%S", &local);
  return text;
}

std::string ReceivedRequest::particulars(const std::string& separator) const {
  std::string text;
  const auto* members = json ? json->asMap() : nullptr;
  if (members == nullptr) return text;
  for (const auto& [key, value] : *members) {
    if (commonKeys().contains(key)) continue;
    if (!text.empty()) text += separator;
    text += key + "=" + (value.asText() ? *value.asText() : jsonFromValue(value));
  }
  return text;
}

std::map<std::string, std::string> parseQuery(std::string_view query) {
  std::map<std::string, std::string> result;
  while (!query.empty()) {
    const auto item = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(query.size(), item.size() + 1));
    if (item.empty()) continue;
    const auto equals = item.find('=');
    const auto value = equals == item.npos ? std::string_view() : item.substr(equals + 1);
    result[decoded(item.substr(0, equals))] = decoded(value);
  }
  return result;
}

}  // namespace kifo::testing
