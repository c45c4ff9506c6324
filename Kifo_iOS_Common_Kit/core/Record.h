#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

/// Records that are decoded from JSON and encoded to it. A record lists its fields once:
///
///     struct Interval {
///       std::int64_t fromValue = 0;
///       std::int64_t toValue = 0;
///     };
///     template <> struct RecordFields<Interval> {
///       static constexpr auto fields = std::tuple(
///           field("fromValue", &Interval::fromValue), field("toValue", &Interval::toValue));
///     };
///
/// A member that is a `std::optional` or a `std::shared_ptr` is an optional field: an absent key or
/// a null leaves it empty. Any other member is required. There is no leniency of types, unknown
/// keys are ignored, and one field that does not decode makes the whole record fail. Encoding
/// writes what is set.
///
/// **Threading:** no shared state. **Errors:** nothing throws; a failure is false or null.
namespace kifo {

template <class Record>
struct RecordFields;

template <class Record, class Member>
struct RecordField {
  const char* key;
  Member Record::*member;
};

template <class Record, class Member>
constexpr RecordField<Record, Member> field(const char* key, Member Record::*member) {
  return {key, member};
}

namespace record {

template <class Type>
inline constexpr bool isOptional = false;
template <class Type>
inline constexpr bool isOptional<std::optional<Type>> = true;
template <class Type>
inline constexpr bool isOptional<std::shared_ptr<Type>> = true;

inline bool read(const Value& json, std::string& value) {
  const std::string* text = json.asText();
  if (text) value = *text;
  return text != nullptr;
}

inline bool read(const Value& json, bool& value) {
  const auto flag = json.asBoolean();
  value = flag.value_or(false);
  return flag.has_value();
}

inline bool read(const Value& json, double& value) {
  const auto number = json.asNumber();
  value = number.value_or(0);
  return number.has_value();
}

/// A whole number, also when it is written with a fraction of zero, that fits 64 bits.
inline bool read(const Value& json, std::int64_t& value) {
  if (const auto whole = json.asInteger()) {
    value = *whole;
    return true;
  }
  if (json.kind() != Value::Kind::number) return false;
  const double number = *json.asNumber();
  if (std::trunc(number) != number || std::abs(number) >= 9223372036854775808.0) return false;
  value = static_cast<std::int64_t>(number);
  return true;
}

template <class Record>
bool read(const Value& json, Record& value);
template <class Type>
bool read(const Value& json, std::shared_ptr<Type>& value);
template <class Type>
bool read(const Value& json, std::vector<Type>& values);

template <class Type>
bool read(const Value& json, std::vector<Type>& values) {
  const auto* list = json.asList();
  if (!list) return false;
  values.reserve(list->size());
  for (const Value& element : *list) {
    if (element.isNull() || !read(element, values.emplace_back())) return false;
  }
  return true;
}

template <class Type>
bool read(const Value& json, std::optional<Type>& value) {
  return read(json, value.emplace());
}

template <class Type>
bool read(const Value& json, std::shared_ptr<Type>& value) {
  value = std::make_shared<Type>();
  return read(json, *value);
}

template <class Record, class Member>
bool readField(const Value::Map& object, Record& record, const RecordField<Record, Member>& field) {
  const auto found = object.find(field.key);
  if (found == object.end() || found->second.isNull()) return isOptional<Member>;
  return read(found->second, record.*field.member);
}

template <class Record>
bool read(const Value& json, Record& value) {
  const auto* object = json.asMap();
  if (!object) return false;
  return std::apply(
      [&](const auto&... fields) { return (readField(*object, value, fields) && ...); },
      RecordFields<Record>::fields);
}

inline Value write(const std::string& value) {
  return value;
}
inline Value write(bool value) {
  return value;
}
inline Value write(double value) {
  return value;
}
inline Value write(std::int64_t value) {
  return value;
}

template <class Record>
Value write(const Record& value);
template <class Type>
Value write(const std::vector<Type>& values);

template <class Type>
Value write(const std::shared_ptr<Type>& value) {
  return write(*value);
}

template <class Type>
Value write(const std::optional<Type>& value) {
  return write(*value);
}

template <class Type>
Value write(const std::vector<Type>& values) {
  Value::List list;
  for (const auto& element : values) list.push_back(write(element));
  return list;
}

template <class Record, class Member>
void writeField(Value::Map& object, const Record& record,
                const RecordField<Record, Member>& field) {
  const Member& value = record.*field.member;
  if constexpr (isOptional<Member>) {
    if (!value) return;
  }
  object.emplace(field.key, write(value));
}

template <class Record>
Value write(const Record& value) {
  Value::Map object;
  std::apply([&](const auto&... fields) { (writeField(object, value, fields), ...); },
             RecordFields<Record>::fields);
  return object;
}

}  // namespace record

/// The record that the JSON text holds, or null; text that is no JSON or no UTF-8 gives null too.
template <class Record>
std::shared_ptr<Record> decode(std::string_view text) {
  const auto json = valueFromJson(text);
  auto decoded = json ? std::make_shared<Record>() : nullptr;
  return decoded && record::read(*json, *decoded) ? decoded : nullptr;
}

/// The record as compact JSON. Bytes that are no UTF-8 become U+FFFD.
template <class Record>
std::string encode(const Record& value) {
  return jsonFromValue(record::write(value));
}

}  // namespace kifo
