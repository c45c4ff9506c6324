#include "Kifo_iOS_Common_Kit/ports/UserDefaults.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace kifo {
namespace {

double numberIn(const std::string& text) {
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : 0.0;
}

struct ToNumber {
  double operator()(bool value) const { return value ? 1.0 : 0.0; }
  double operator()(std::int64_t value) const { return static_cast<double>(value); }
  double operator()(double value) const { return value; }
  double operator()(const std::string& value) const { return numberIn(value); }
};

std::int64_t clamped(double number) {
  using Limits = std::numeric_limits<std::int64_t>;
  if (std::isnan(number)) return 0;
  if (number >= static_cast<double>(Limits::max())) return Limits::max();
  if (number <= static_cast<double>(Limits::min())) return Limits::min();
  return static_cast<std::int64_t>(number);
}

}  // namespace

std::optional<std::string> UserDefaults::string(const std::string& key) const {
  const auto stored = value(key);
  const auto* text = stored ? std::get_if<std::string>(&*stored) : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

double UserDefaults::number(const std::string& key) const {
  const auto stored = value(key);
  return stored ? std::visit(ToNumber{}, *stored) : 0.0;
}

std::int64_t UserDefaults::integer(const std::string& key) const {
  const auto stored = value(key);
  if (!stored) return 0;
  if (const auto* whole = std::get_if<std::int64_t>(&*stored)) return *whole;
  return clamped(std::visit(ToNumber{}, *stored));
}

}  // namespace kifo
