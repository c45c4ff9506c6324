#pragma once

#include <string_view>

#include <nlohmann/json.hpp>

namespace kifo::tool {

/// The JSON that `text` holds; discarded when it is none, and when it is nested more than 500
/// levels deep, because the tool copies and prints JSON recursively.
inline nlohmann::json readJson(std::string_view text) {
  constexpr int DEEPEST = 500;
  bool isTooDeep = false;
  auto json = nlohmann::json::parse(
      text,
      [&](int depth, nlohmann::json::parse_event_t, const nlohmann::json&) {
        isTooDeep = isTooDeep || depth > DEEPEST;
        return !isTooDeep;
      },
      /*allow_exceptions=*/false);
  return isTooDeep ? nlohmann::json(nlohmann::json::value_t::discarded) : json;
}

}  // namespace kifo::tool
