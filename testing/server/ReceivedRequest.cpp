#include "testing/server/ReceivedRequest.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <utility>

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
  auto parsed = nlohmann::json::parse(body, nullptr, /*allow_exceptions=*/false);
  if (!parsed.is_discarded()) json = std::move(parsed);
}

std::string ReceivedRequest::header(std::string_view name) const {
  const auto found = headers.find(name);
  return found == headers.end() ? "" : found->second;
}

std::string ReceivedRequest::text(const char* key) const {
  if (!json || !json->is_object()) return "";
  const auto found = json->find(key);
  return found != json->end() && found->is_string() ? found->get<std::string>() : "";
}

nlohmann::json ReceivedRequest::toJson() const {
  return {{"number", number},
          {"time", time},
          {"method", method},
          {"path", path},
          {"query", query},
          {"headers", headers},
          {"body", json ? *json : nlohmann::json(body)},
          {"remotePort", remotePort},
          {"status", status}};
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
