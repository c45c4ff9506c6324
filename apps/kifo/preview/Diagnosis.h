#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include <nlohmann/json.hpp>

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"

/// Says in plain words why JSON is not the record that it should be, where decoding only says that
/// it is not. It goes by the same table of fields.
///
///     problemIn<AppCommunication>(json)   // "model[2].maxShowCount must be a whole number, not
///     \"3\""
///
/// **Threading:** no shared state.
namespace kifo::tool {

template <class Type>
struct IsVector : std::false_type {};
template <class Type>
struct IsVector<std::vector<Type>> : std::true_type {};

template <class Type>
constexpr const char* wantedWord() {
  if constexpr (std::is_same_v<Type, std::string>) return "a text";
  if constexpr (std::is_same_v<Type, bool>) return "true or false";
  if constexpr (std::is_same_v<Type, std::int64_t>) return "a whole number";
  if constexpr (std::is_same_v<Type, double>) return "a number";
  if constexpr (std::is_enum_v<Type>) return "one of the words that it may be";
  if constexpr (IsVector<Type>::value) return "a list";
  return "an object";
}

std::string mustBe(const std::string& path, const char* wanted, const nlohmann::json& found);

template <class Type>
std::optional<std::string> problemIn(const nlohmann::json& json, const std::string& path = {});

template <class Record, class Member>
void checkField(const nlohmann::json& object, const std::string& path,
                const RecordField<Record, Member>& field, std::optional<std::string>& problem) {
  if (problem) return;
  const std::string name = path.empty() ? field.key : path + "." + field.key;
  const auto found = object.find(field.key);
  if (found != object.end() && !found->is_null()) {
    problem = problemIn<Member>(*found, name);
  } else if (!record::isOptional<Member>) {
    problem = name + " is missing";
  }
}

template <class Type>
std::optional<std::string> problemInList(const nlohmann::json& list, const std::string& path) {
  for (std::size_t index = 0; index < list.size(); ++index) {
    const std::string name = path + "[" + std::to_string(index) + "]";
    if (list[index].is_null()) return name + " is null";
    if (auto problem = problemIn<Type>(list[index], name)) return problem;
  }
  return std::nullopt;
}

template <class Type>
std::optional<std::string> problemInRecord(const nlohmann::json& object, const std::string& path) {
  std::optional<std::string> problem;
  std::apply([&](const auto&... fields) { (checkField(object, path, fields, problem), ...); },
             RecordFields<Type>::fields);
  return problem;
}

/// The first problem with `json`; none when it decodes.
template <class Type>
std::optional<std::string> problemIn(const nlohmann::json& json, const std::string& path) {
  if constexpr (requires { typename Type::element_type; }) {
    return problemIn<typename Type::element_type>(json, path);
  } else if constexpr (record::isOptional<Type>) {
    return problemIn<typename Type::value_type>(json, path);
  } else if constexpr (IsVector<Type>::value) {
    if (!json.is_array()) return mustBe(path, wantedWord<Type>(), json);
    return problemInList<typename Type::value_type>(json, path);
  } else if constexpr (requires { RecordFields<Type>::fields; }) {
    if (!json.is_object()) return mustBe(path, wantedWord<Type>(), json);
    return problemInRecord<Type>(json, path);
  } else {
    using record::read;  // Some types bring a reading of their own.
    Type value{};
    if (read(valueFromJson(json.dump()).value_or(Value()), value)) return std::nullopt;
    return mustBe(path, wantedWord<Type>(), json);
  }
}

}  // namespace kifo::tool
