#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

/// Whether a payload's value under `key` is a secret: "push_token", "authorization", "accessToken".
bool isSecret(std::string_view key) {
  std::string lower(key);
  std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
  return lower.ends_with("token") || lower.ends_with("authorization") ||
         lower.ends_with("password");
}

/// An empty secret stays empty, which is worth knowing.
bool isToBeMasked(const std::string& key, const Value& value) {
  return isSecret(key) && value != Value("");
}

Value masked(const std::string& parametersJson) {
  const auto parameters = valueFromJson(parametersJson);
  const Value::Map* members = parameters ? parameters->asMap() : nullptr;
  if (!members) return {};
  Value::Map shown = *members;
  for (auto& [key, value] : shown) {
    if (isToBeMasked(key, value)) value = "***";
  }
  return shown;
}

/// A particular as tools see it: payloads with their secrets masked, addresses without their query,
/// which repeats the payload.
Value shown(const std::string& key, const std::string& text) {
  if (key == "parameters") return masked(text);
  if (key == "url") return text.substr(0, text.find('?'));
  return text;
}

/// The decision as a line of JSON, with the present time.
std::string watchLine(const Decision& decision) {
  Value::Map line;
  for (const auto& [key, text] : decision.particulars) line.emplace(key, shown(key, text));
  line["kind"] = decision.kind;
  line["time"] = Platform::current()->clock->millisecondsSince1970();
  return jsonFromValue(line);
}

}  // namespace

std::atomic<bool> Watch::isOn = false;

bool hasInspector() {
  return Platform::current()->inspector != nullptr;
}

void tellDecision(const Decision& decision) {
  const auto platform = Platform::current();
  if (platform->inspector) platform->inspector->decided(decision);
  if (Watch::isOn.load(std::memory_order_relaxed)) tellTools(decision);
}

void tellTools(const Decision& decision) {
  Platform::current()->watch->publish(watchLine(decision));
}

}  // namespace kifo
