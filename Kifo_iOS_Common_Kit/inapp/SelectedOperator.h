#pragma once

#include <optional>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// How a score is compared with a condition's value.
enum class SelectedOperator {
  greaterThan,
  greaterThanEqualTo,
  lessThan,
  lessThanEqualTo,
  isEqualTo,
  notEqualTo,
};

/// "GREATER_THAN" and so on, as the server writes it.
KIFO_EXPORT std::string_view rawValue(SelectedOperator value);

/// Any other text does not decode, and with it the whole answer.
KIFO_EXPORT bool read(const nlohmann::json& json, SelectedOperator& value);
KIFO_EXPORT nlohmann::json write(SelectedOperator value);

}  // namespace kifo
