#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"

#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Url.h"

namespace kifo {
namespace {

using nlohmann::json;

std::string compact(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// Only a text that goes beyond ASCII can need mending.
bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<signed char>(c) >= 0; });
}

std::string mended(const std::string& text) {
  return isAscii(text) ? text : json::parse(compact(text)).get<std::string>();
}

std::string queryValue(const json& value) {
  return value.is_string() ? mended(value.get_ref<const std::string&>()) : compact(value);
}

std::string withQuery(const std::string& base, const json& parameters) {
  const auto fragment = std::min(base.find('#'), base.size());
  std::string url = base.substr(0, std::min(base.find('?'), fragment));
  char separator = '?';
  for (const auto& [key, value] : parameters.items()) {
    url += separator;
    appendPercentEncoded(url, mended(key));
    url += '=';
    appendPercentEncoded(url, queryValue(value));
    separator = '&';
  }
  return url.append(base, fragment, std::string::npos);
}

}  // namespace

RequestTexts::RequestTexts(std::string base, bool hasQuery, Composition composition)
    : base_(std::move(base)), hasQuery_(hasQuery), composition_(std::move(composition)) {}

RequestTexts::RequestTexts(std::string base, bool hasQuery, RequestParameters parameters)
    : base_(std::move(base)), hasQuery_(hasQuery), parameters_(std::move(parameters)) {}

const RequestParameters& RequestTexts::parameters() const {
  std::call_once(parametersOnce_, [this] {
    if (composition_) parameters_ = std::exchange(composition_, nullptr)();
  });
  return parameters_;
}

const std::string& RequestTexts::url() const {
  std::call_once(urlOnce_, [this] {
    url_ = hasQuery_ && parameters() ? withQuery(base_, *parameters()) : base_;
  });
  return url_;
}

const std::string& RequestTexts::json() const {
  std::call_once(jsonOnce_,
                 [this] { json_ = parameters() ? compact(*parameters()) : std::string("{}"); });
  return json_;
}

std::optional<std::string> RequestTexts::body() const {
  return parameters() ? std::optional(json()) : std::nullopt;
}

RequestParameters parametersFromText(std::string_view text) {
  auto parsed = json::parse(text, nullptr, /*allow_exceptions=*/false);
  return parsed.is_object() ? std::make_shared<const json>(std::move(parsed)) : nullptr;
}

bool isUtf8(const std::string& text) {
  try {
    return isAscii(text) || !json(text).dump().empty();
  } catch (const json::exception&) {
    return false;
  }
}

}  // namespace kifo
