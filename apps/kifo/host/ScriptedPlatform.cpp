#include "apps/kifo/host/ScriptedPlatform.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"
#include "platform/linux/LinuxPlatform.h"

namespace kifo::tool {
namespace {

using Outcome = CapacityReading::Outcome;

std::uint32_t flagsOf(const nlohmann::json& value) {
  if (value == "online") return ReachabilityFlags::reachable;
  if (value == "offline") return 0;
  if (!value.is_object()) throw BadLine("\"network\" is online, offline or {\"flags\": number}");
  Arguments arguments(value);
  const auto flags = arguments.integer("flags", 0, UINT32_MAX);
  arguments.finish();
  return static_cast<std::uint32_t>(flags);
}

/// A number of bytes; null for a volume whose size cannot be told.
std::optional<CapacityReading> capacityIn(Arguments& arguments, const std::string& label) {
  if (!arguments.names(label)) return std::nullopt;
  if (arguments.any(label).is_null()) return CapacityReading{Outcome::missing};
  return CapacityReading{Outcome::known, arguments.integer(label, INT64_MIN, INT64_MAX)};
}

DefaultsValue defaultsValue(const std::string& key, const Value& value) {
  if (const auto flag = value.asBoolean()) return *flag;
  if (const auto whole = value.asInteger()) return *whole;
  if (const auto number = value.asNumber()) return *number;
  if (const auto* text = value.asText()) return *text;
  throw BadLine("\"" + key + "\" must be a text, a number, true or false");
}

}  // namespace

ScriptedPlatform::ScriptedPlatform(std::string home, std::shared_ptr<Output> output,
                                   bool writesDecisions, std::shared_ptr<PopupPresenter> popups)
    : home_(std::move(home)),
      output_(std::move(output)),
      writesDecisions_(writesDecisions),
      popups_(std::move(popups)),
      reachability_(std::make_shared<testing::FakeReachability>()),
      device_(std::make_shared<testing::FakeDeviceProbe>()),
      position_(std::make_shared<testing::FakePositionSource>()),
      notifications_(std::make_shared<ScriptedNotificationCentre>()) {
  reachability_->setFlags(ReachabilityFlags::reachable);
}

void ScriptedPlatform::install() {
  LinuxPlatformOptions options;
  options.documentsDirectory = home_;
  options.applicationIdentifier = "kifo.host";
  Platform platform = makeLinuxPlatform(options);
  // Here the reachability queue has little to do.
  timers_ = platform.reachabilityQueue;
  mainQueue_ = std::make_shared<TimerCountingQueue>(platform.mainQueue);
  platform.mainQueue = mainQueue_;
  const auto zone = clock_ ? clock_->zone.get() : std::nullopt;
  clock_ = std::make_shared<ScriptedClock>(platform.clock);
  clock_->zone.set(zone);
  platform.clock = clock_;
  platform.reachability = reachability_;
  platform.device = device_;
  platform.position = position_;
  platform.notifications = notifications_;
  platform.popups = popups_;
  platform.console = output_;
  if (writesDecisions_) platform.inspector = output_;
  Platform::install(std::move(platform));
}

void ScriptedPlatform::network(const nlohmann::json& value) {
  reachability_->change(flagsOf(value));
  const auto platform = Platform::current();
  platform->reachabilityQueue->sync([] {});
  platform->mainQueue->sync([] {});
}

void ScriptedPlatform::device(Arguments arguments) {
  const auto machine = arguments.optionalText("machine");
  const auto version = arguments.optionalText("osVersion");
  const bool namesVendor = arguments.names("vendorIdentifier");
  const auto vendor = arguments.optionalText("vendorIdentifier");
  const auto battery = arguments.optionalNumber("batteryLevel");
  const auto total = capacityIn(arguments, "diskTotal");
  const auto available = capacityIn(arguments, "diskAvailable");
  const auto zone = arguments.optionalText("timeZone");
  arguments.finish();
  device_->readings.update([&](auto& readings) {
    if (machine) readings.machine = *machine;
    if (version) readings.systemVersion = *version;
    if (namesVendor) readings.vendorIdentifier = vendor;
    if (battery) readings.batteryLevel = static_cast<float>(*battery);
    if (total) readings.total = *total;
    if (available) readings.available = *available;
  });
  if (zone) clock_->zone.set(zone);
}

void ScriptedPlatform::location(Arguments arguments) {
  std::optional<std::int64_t> authorization, state;
  if (arguments.has("authorization")) authorization = arguments.integer("authorization", 0, 4);
  if (arguments.has("applicationState")) state = arguments.integer("applicationState", 0, 2);
  const bool namesPlace = arguments.names("latitude") || arguments.names("longitude");
  const auto latitude = arguments.optionalNumber("latitude");
  const auto longitude = arguments.optionalNumber("longitude");
  arguments.finish();
  if (latitude.has_value() != longitude.has_value()) {
    throw BadLine("\"latitude\" and \"longitude\" go together");
  }
  if (authorization) position_->authorization = static_cast<int>(*authorization);
  if (state) position_->state = static_cast<int>(*state);
  if (!namesPlace) return;
  position_->coordinate.set(latitude ? std::optional(Coordinate{*latitude, *longitude})
                                     : std::nullopt);
}

void ScriptedPlatform::defaults(const EventParameters& values) {
  std::vector<std::pair<std::string, DefaultsValue>> read;
  for (const auto& [key, value] : values) read.emplace_back(key, defaultsValue(key, value));
  for (auto& [key, value] : read) {
    Platform::current()->userDefaults->setValue(key, std::move(value));
  }
}

}  // namespace kifo::tool
