#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"

#include <array>

namespace kifo {
namespace {

using namespace std::string_view_literals;

constexpr std::array kRawValues{"GREATER_THAN"sv, "GREATER_THAN_EQUAL_TO"sv,
                                "LESS_THAN"sv,    "LESS_THAN_EQUAL_TO"sv,
                                "IS_EQUAL_TO"sv,  "NOT_EQUAL_TO"sv};

}  // namespace

std::string_view rawValue(SelectedOperator value) {
  return kRawValues[static_cast<std::size_t>(value)];
}

bool read(const Value& json, SelectedOperator& value) {
  const std::string* text = json.asText();
  for (std::size_t ordinal = 0; ordinal < kRawValues.size(); ++ordinal) {
    if (!text || kRawValues[ordinal] != *text) continue;
    value = static_cast<SelectedOperator>(ordinal);
    return true;
  }
  return false;
}

Value write(SelectedOperator value) {
  return std::string(rawValue(value));
}

}  // namespace kifo
