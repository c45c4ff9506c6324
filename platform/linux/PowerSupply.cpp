#include "platform/linux/PowerSupply.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <numeric>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/linux/SystemFiles.h"

namespace kifo {
namespace {

/// What a battery holds, in some unit.
struct Charge {
  double now;
  double full;
};

struct Battery {
  std::optional<double> level;    ///< 0.0 to 1.0
  std::optional<Charge> energy;   ///< Watt hours, in millionths.
  std::optional<Charge> current;  ///< Ampere hours, in millionths.
};

std::string textIn(const std::filesystem::path& file) {
  return trimmed(readFile(file.string()).value_or(""));
}

std::optional<double> numberIn(const std::filesystem::path& file) {
  const auto text = textIn(file);
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end == text.data()) return std::nullopt;
  return number;
}

std::optional<Charge> chargeIn(const std::filesystem::path& folder, const std::string& kind) {
  const auto now = numberIn(folder / (kind + "_now"));
  const auto full = numberIn(folder / (kind + "_full"));
  if (!now || !full || *full <= 0.0) return std::nullopt;
  return Charge{*now, *full};
}

std::optional<Battery> batteryIn(const std::filesystem::path& folder) {
  if (textIn(folder / "type") != "Battery" || textIn(folder / "scope") == "Device") return {};
  if (textIn(folder / "present") == "0") return {};
  Battery battery{std::nullopt, chargeIn(folder, "energy"), chargeIn(folder, "charge")};
  const auto size = battery.energy ? battery.energy : battery.current;
  if (const auto percent = numberIn(folder / "capacity")) {
    battery.level = *percent / 100.0;
  } else if (size) {
    battery.level = size->now / size->full;
  }
  return battery.level ? std::optional(battery) : std::nullopt;
}

std::vector<Battery> batteriesIn(const std::string& folder) {
  std::vector<Battery> batteries;
  std::error_code error;
  for (std::filesystem::directory_iterator each(folder, error), end; !error && each != end;
       each.increment(error)) {
    if (auto battery = batteryIn(each->path())) batteries.push_back(*battery);
  }
  return batteries;
}

/// None when one of them does not tell its size in this unit.
std::optional<double> weighted(const std::vector<Battery>& batteries,
                               std::optional<Charge> Battery::*unit) {
  Charge sum{0.0, 0.0};
  for (const Battery& battery : batteries) {
    const auto& charge = battery.*unit;
    if (!charge) return std::nullopt;
    sum = {sum.now + charge->now, sum.full + charge->full};
  }
  return sum.now / sum.full;
}

double mean(const std::vector<Battery>& batteries) {
  const auto add = [](double sum, const Battery& battery) { return sum + *battery.level; };
  return std::accumulate(batteries.begin(), batteries.end(), 0.0, add) /
         static_cast<double>(batteries.size());
}

double levelOf(const std::vector<Battery>& batteries) {
  if (batteries.size() == 1) return *batteries.front().level;
  if (const auto level = weighted(batteries, &Battery::energy)) return *level;
  return weighted(batteries, &Battery::current).value_or(mean(batteries));
}

}  // namespace

float batteryLevelIn(const std::string& folder) {
  const auto batteries = batteriesIn(folder);
  if (batteries.empty()) return -1.0F;
  return static_cast<float>(std::clamp(levelOf(batteries), 0.0, 1.0));
}

}  // namespace kifo
