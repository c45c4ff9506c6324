#include "Kifo_iOS_Common_Kit/device/LocationManager.h"

#include <array>
#include <charconv>
#include <cmath>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr int kAuthorizedAlways = 3;
constexpr int kAuthorizedWhenInUse = 4;
constexpr int kActive = 0;

/// As the description of a double: a whole number keeps its ".0", and an exponent stands only below
/// 0.0001 and from 1e16 on.
std::string shortestText(double number) {
  const double size = std::abs(number);
  const bool isPlain = size == 0.0 || (size >= 1e-4 && size < 1e16);
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                 isPlain ? std::chars_format::fixed : std::chars_format::scientific)
                       .ptr;
  std::string text(buffer.data(), end);
  if (text.find_first_of(".en") == std::string::npos) text += ".0";
  return text;
}

}  // namespace

std::optional<std::pair<std::string, std::string>> LocationManager::currentLocation() {
  const auto source = Platform::current()->position;
  const int status = source->authorizationStatus();
  if (status != kAuthorizedAlways && status != kAuthorizedWhenInUse) return std::nullopt;
  if (source->applicationState() != kActive) return std::nullopt;
  const auto location = source->location();
  if (!location) return std::nullopt;
  return std::pair(shortestText(location->latitude), shortestText(location->longitude));
}

}  // namespace kifo
