#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <nlohmann/json.hpp>

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

inline bool read(const nlohmann::json& json, std::string& value) {
  if (!json.is_string()) return false;
  value = json.get_ref<const std::string&>();
  return true;
}

inline bool read(const nlohmann::json& json, bool& value) {
  if (!json.is_boolean()) return false;
  value = json.get<bool>();
  return true;
}

inline bool read(const nlohmann::json& json, double& value) {
  if (!json.is_number()) return false;
  value = json.get<double>();
  return true;
}

/// A whole number, also when it is written with a fraction of zero, that fits 64 bits.
inline bool read(const nlohmann::json& json, std::int64_t& value) {
  if (json.is_number_unsigned()) {
    const auto number = json.get<std::uint64_t>();
    value = static_cast<std::int64_t>(number);
    return number <= static_cast<std::uint64_t>(INT64_MAX);
  }
  if (json.is_number_integer()) {
    value = json.get<std::int64_t>();
    return true;
  }
  if (!json.is_number_float()) return false;
  const double number = json.get<double>();
  if (std::trunc(number) != number || std::abs(number) >= 9223372036854775808.0) return false;
  value = static_cast<std::int64_t>(number);
  return true;
}

template <class Record>
bool read(const nlohmann::json& json, Record& value);
template <class Type>
bool read(const nlohmann::json& json, std::shared_ptr<Type>& value);
template <class Type>
bool read(const nlohmann::json& json, std::vector<Type>& values);

template <class Type>
bool read(const nlohmann::json& json, std::vector<Type>& values) {
  if (!json.is_array()) return false;
  values.reserve(json.size());
  for (const auto& element : json) {
    if (element.is_null() || !read(element, values.emplace_back())) return false;
  }
  return true;
}

template <class Type>
bool read(const nlohmann::json& json, std::optional<Type>& value) {
  return read(json, value.emplace());
}

template <class Type>
bool read(const nlohmann::json& json, std::shared_ptr<Type>& value) {
  value = std::make_shared<Type>();
  return read(json, *value);
}

template <class Record, class Member>
bool readField(const nlohmann::json& object, Record& record,
               const RecordField<Record, Member>& field) {
  const auto found = object.find(field.key);
  if (found == object.end() || found->is_null()) return isOptional<Member>;
  return read(*found, record.*field.member);
}

template <class Record>
bool read(const nlohmann::json& json, Record& value) {
  if (!json.is_object()) return false;
  return std::apply([&](const auto&... fields) { return (readField(json, value, fields) && ...); },
                    RecordFields<Record>::fields);
}

inline nlohmann::json write(const std::string& value) {
  return value;
}
inline nlohmann::json write(bool value) {
  return value;
}
inline nlohmann::json write(double value) {
  return value;
}
inline nlohmann::json write(std::int64_t value) {
  return value;
}

template <class Record>
nlohmann::json write(const Record& value);
template <class Type>
nlohmann::json write(const std::vector<Type>& values);

template <class Type>
nlohmann::json write(const std::shared_ptr<Type>& value) {
  return write(*value);
}

template <class Type>
nlohmann::json write(const std::optional<Type>& value) {
  return write(*value);
}

template <class Type>
nlohmann::json write(const std::vector<Type>& values) {
  auto array = nlohmann::json::array();
  for (const auto& element : values) array.push_back(write(element));
  return array;
}

template <class Record, class Member>
void writeField(nlohmann::json& object, const Record& record,
                const RecordField<Record, Member>& field) {
  const Member& value = record.*field.member;
  if constexpr (isOptional<Member>) {
    if (!value) return;
  }
  object[field.key] = write(value);
}

template <class Record>
nlohmann::json write(const Record& value) {
  auto object = nlohmann::json::object();
  std::apply([&](const auto&... fields) { (writeField(object, value, fields), ...); },
             RecordFields<Record>::fields);
  return object;
}

}  // namespace record

/// The record that `json` holds, or null.
template <class Record>
std::shared_ptr<Record> decode(const nlohmann::json& json) {
  auto decoded = std::make_shared<Record>();
  return record::read(json, *decoded) ? decoded : nullptr;
}

/// The record that the JSON text holds, or null; text that is no JSON or no UTF-8 gives null too.
template <class Record>
std::shared_ptr<Record> decode(std::string_view text) {
  const auto json = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  return json.is_discarded() ? nullptr : decode<Record>(json);
}

/// The JSON object that `value` makes.
template <class Record>
nlohmann::json encode(const Record& value) {
  return record::write(value);
}

}  // namespace kifo
