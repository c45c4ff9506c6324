#pragma once

#include <cstdint>
#include <string>

#include <nlohmann/json.hpp>

namespace kifo::testing {

/// "08:22:04", in local time.
std::string clockTime(std::int64_t millisecondsSince1970);

/// What an event carries beyond what every event does: "price=12.5, sku=B-17".
std::string particulars(const nlohmann::json& event, const std::string& separator = ", ");

}  // namespace kifo::testing
