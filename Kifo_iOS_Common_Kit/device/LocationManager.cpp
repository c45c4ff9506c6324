#include "Kifo_iOS_Common_Kit/device/LocationManager.h"

#include "Kifo_iOS_Common_Kit/device/FormattableNumeric.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr int kAuthorizedAlways = 3;
constexpr int kAuthorizedWhenInUse = 4;
constexpr int kActive = 0;

}  // namespace

std::optional<std::pair<std::string, std::string>> LocationManager::currentLocation() {
  const auto source = Platform::current()->position;
  const int status = source->authorizationStatus();
  if (status != kAuthorizedAlways && status != kAuthorizedWhenInUse) return std::nullopt;
  if (source->applicationState() != kActive) return std::nullopt;
  const auto location = source->location();
  if (!location) return std::nullopt;
  return std::pair(FormattableNumeric::text(location->latitude),
                   FormattableNumeric::text(location->longitude));
}

}  // namespace kifo
