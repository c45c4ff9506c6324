#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Value.h"

/// Values as JSON text and back, at any depth of nesting.
namespace kifo {

/// The value as compact JSON. Bytes that are no UTF-8 become U+FFFD; a double that is no finite
/// number becomes null.
///
/// **Threading:** no shared state.
KIFO_EXPORT std::string jsonFromValue(const Value& value);
/// The same of a map.
KIFO_EXPORT std::string jsonFromValue(const Value::Map& members);

/// The value that the JSON text holds; none for text that is no JSON or no UTF-8. Of members with
/// the same key the last one counts. Hosts use it for a push that reaches them as JSON.
///
/// **Threading:** no shared state. **Errors:** nothing throws.
KIFO_EXPORT std::optional<Value> valueFromJson(std::string_view json);

}  // namespace kifo
