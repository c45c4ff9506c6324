#include "testing/server/Faults.h"

#include <array>
#include <string_view>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::testing {

namespace {

template <class Enumeration>
using Words = std::array<std::pair<Enumeration, std::string_view>, 5>;

constexpr Words<Faults::Body> bodies{{{Faults::Body::GOOD, "good"},
                                      {Faults::Body::TRUNCATED, "truncated"},
                                      {Faults::Body::INVALID_UTF8, "invalid-utf8"},
                                      {Faults::Body::EMPTY, "empty"},
                                      {Faults::Body::HUGE_BODY, "huge"}}};
constexpr Words<Faults::Connection> connections{{{Faults::Connection::KEEP, "keep"},
                                                 {Faults::Connection::DROP, "drop"},
                                                 {Faults::Connection::DIE, "die"}}};
constexpr Words<Faults::On> places{
    {{Faults::On::ALL, "all"}, {Faults::On::API, "api"}, {Faults::On::LISTENER, "listener"}}};

template <class Enumeration>
std::string word(const Words<Enumeration>& words, Enumeration value) {
  for (const auto& [each, text] : words) {
    if (each == value) return std::string(text);
  }
  return "";
}

template <class Enumeration>
bool read(const Words<Enumeration>& words, const Value& json, Enumeration& value) {
  const std::string* word = json.asText();
  if (word == nullptr || word->empty()) return false;
  for (const auto& [each, text] : words) {
    if (*word != text) continue;
    value = each;
    return true;
  }
  return false;
}

template <class Number>
bool readNumber(const Value& json, Number& value) {
  const auto number = json.asNumber();
  if (!number || *number < 0) return false;
  value = static_cast<Number>(*number);
  return true;
}

bool readMember(Faults& faults, const std::string& key, const Value& value) {
  if (key == "latency") return readNumber(value, faults.latency);
  if (key == "status") return readNumber(value, faults.status);
  if (key == "everyOther") return readNumber(value, faults.everyOther);
  if (key == "bodySize") return readNumber(value, faults.bodySize);
  if (key == "body") return read(bodies, value, faults.body);
  if (key == "connection") return read(connections, value, faults.connection);
  if (key == "on") return read(places, value, faults.on);
  return key == "times" && (value.isNull() || readNumber(value, faults.times.emplace()));
}

}  // namespace

Value Faults::toValue() const {
  Value::Map json = {{"latency", latency},       {"status", status},
                     {"everyOther", everyOther}, {"body", word(bodies, body)},
                     {"bodySize", bodySize},     {"connection", word(connections, connection)},
                     {"on", word(places, on)}};
  if (times) json["times"] = *times;
  return json;
}

std::optional<Faults> Faults::fromValue(const Value& value, std::string& problem) {
  Faults faults;
  const Value::Map* members = value.asMap();
  if (members == nullptr) {
    problem = "faults are a JSON object";
    return std::nullopt;
  }
  for (const auto& [key, member] : *members) {
    if (readMember(faults, key, member)) continue;
    problem = "not a fault: \"" + key + "\": " + jsonFromValue(member);
    return std::nullopt;
  }
  return faults;
}

}  // namespace kifo::testing
