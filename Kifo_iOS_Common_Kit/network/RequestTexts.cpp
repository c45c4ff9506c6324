#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"

#include <algorithm>

#include "Kifo_iOS_Common_Kit/core/Url.h"
#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo {
namespace {

/// Only a text that goes beyond ASCII can need mending.
bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<signed char>(c) >= 0; });
}

std::string mended(const std::string& text) {
  return isAscii(text) ? text : *valueFromJson(jsonFromValue(text)).value().asText();
}

std::string queryValue(const Value& value) {
  const std::string* text = value.asText();
  return text ? mended(*text) : jsonFromValue(value);
}

std::string withQuery(const std::string& base, const EventParameters& parameters) {
  const auto fragment = std::min(base.find('#'), base.size());
  std::string url = base.substr(0, std::min(base.find('?'), fragment));
  char separator = '?';
  for (const auto& [key, value] : parameters) {
    url += separator;
    appendPercentEncoded(url, mended(key));
    url += '=';
    appendPercentEncoded(url, queryValue(value));
    separator = '&';
  }
  return url.append(base, fragment, std::string::npos);
}

}  // namespace

const RequestParameters::Dictionary& RequestTexts::dictionary() const {
  if (parameters_.compose) {
    parameters_.dictionary = std::make_shared<const EventParameters>(parameters_.compose());
    parameters_.compose = nullptr;
  }
  return parameters_.dictionary;
}

const std::string& RequestTexts::jsonText() const {
  if (!json_) json_ = dictionary() ? jsonFromValue(*dictionary()) : std::string("{}");
  return *json_;
}

const std::string& RequestTexts::url() const {
  const MutexLock lock(mutex_);
  if (!url_) {
    const bool isWritten = serviceUrl_.hasQuery && dictionary();
    url_ = isWritten ? withQuery(serviceUrl_.base, *dictionary()) : serviceUrl_.base;
  }
  return *url_;
}

const std::string& RequestTexts::json() const {
  const MutexLock lock(mutex_);
  return jsonText();
}

std::optional<std::string> RequestTexts::body() const {
  const MutexLock lock(mutex_);
  return dictionary() ? std::optional(jsonText()) : std::nullopt;
}

RequestParameters::Dictionary parametersFromText(std::string_view text) {
  const auto parsed = valueFromJson(text);
  const EventParameters* members = parsed ? parsed->asMap() : nullptr;
  return members ? std::make_shared<const EventParameters>(*members) : nullptr;
}

bool isUtf8(const std::string& text) {
  return isAscii(text) || mended(text) == text;
}

}  // namespace kifo
