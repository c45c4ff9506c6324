#include "apps/kifo/host/Arguments.h"

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::tool {
namespace {

int digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

bool Arguments::has(const std::string& label) const {
  const auto found = object_.find(label);
  return found != object_.end() && !found->is_null();
}

const nlohmann::json& Arguments::required(const std::string& label,
                                          bool (nlohmann::json::*is)() const, const char* what) {
  known_.insert(label);
  if (!has(label)) throw BadLine("\"" + label + "\" is missing");
  const nlohmann::json& value = object_[label];
  if (!(value.*is)()) throw BadLine("\"" + label + "\" must be " + what);
  return value;
}

std::string Arguments::text(const std::string& label) {
  return required(label, &nlohmann::json::is_string, "a text").get<std::string>();
}

std::optional<std::string> Arguments::optionalText(const std::string& label) {
  known_.insert(label);
  return has(label) ? std::optional(text(label)) : std::nullopt;
}

bool Arguments::flag(const std::string& label, bool otherwise) {
  known_.insert(label);
  if (!has(label)) return otherwise;
  return required(label, &nlohmann::json::is_boolean, "true or false").get<bool>();
}

double Arguments::number(const std::string& label) {
  return required(label, &nlohmann::json::is_number, "a number").get<double>();
}

std::optional<double> Arguments::optionalNumber(const std::string& label) {
  known_.insert(label);
  return has(label) ? std::optional(number(label)) : std::nullopt;
}

std::int64_t Arguments::integer(const std::string& label, std::int64_t least, std::int64_t most) {
  std::int64_t value = 0;
  const auto& json = required(label, &nlohmann::json::is_number, "a number");
  if (!record::read(valueFromJson(json.dump()).value_or(Value()), value) || value < least ||
      value > most) {
    throw BadLine("\"" + label + "\" must be a whole number from " + std::to_string(least) +
                  " to " + std::to_string(most));
  }
  return value;
}

std::vector<std::uint8_t> Arguments::bytes(const std::string& label) {
  const std::string digits = text(label);
  std::vector<std::uint8_t> bytes;
  for (std::size_t index = 0; index < digits.size(); index += 2) {
    const int high = digit(digits[index]);
    const int low = index + 1 < digits.size() ? digit(digits[index + 1]) : -1;
    if (high < 0 || low < 0) {
      throw BadLine("\"" + label + "\" must be hexadecimal digits, two a byte");
    }
    bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
  }
  return bytes;
}

nlohmann::json Arguments::any(const std::string& label) {
  known_.insert(label);
  return has(label) ? object_[label] : nlohmann::json();
}

EventParameters Arguments::object(const std::string& label) {
  known_.insert(label);
  if (!has(label)) return {};
  return *valueFromJson(required(label, &nlohmann::json::is_object, "an object").dump())->asMap();
}

Arguments Arguments::arguments(const std::string& label) {
  known_.insert(label);
  if (!has(label)) return Arguments(nlohmann::json::object());
  return Arguments(required(label, &nlohmann::json::is_object, "an object"));
}

void Arguments::finish() const {
  for (const auto& [label, value] : object_.items()) {
    if (!known_.contains(label)) throw BadLine("there is no argument \"" + label + "\" here");
  }
}

}  // namespace kifo::tool
