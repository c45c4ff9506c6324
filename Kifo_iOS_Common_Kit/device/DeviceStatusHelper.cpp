#include "Kifo_iOS_Common_Kit/device/DeviceStatusHelper.h"

#include <cmath>
#include <cstdint>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "Kifo_iOS_Common_Kit/device/ModelNames.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr auto kUnavailable = "-1";

/// The last capacity that was read.
class CachedReading {
 public:
  std::string get() const {
    const MutexLock lock(mutex_);
    return text_;
  }
  void set(const std::string& text) {
    const MutexLock lock(mutex_);
    text_ = text;
  }

 private:
  mutable Mutex mutex_;
  std::string text_ KIFO_GUARDED_BY(mutex_) = kUnavailable;
};

CachedReading& cached(VolumeCapacity kind) {
  static CachedReading& total = *new CachedReading;
  static CachedReading& available = *new CachedReading;
  return kind == VolumeCapacity::total ? total : available;
}

std::string capacity(VolumeCapacity kind, std::string_view unavailable) {
  const CapacityReading reading = Platform::current()->device->capacity(kind);
  switch (reading.outcome) {
    case CapacityReading::Outcome::failed:
      return cached(kind).get();
    case CapacityReading::Outcome::missing:
      Console::print(DeviceStatusHelper::LOG_TAG, unavailable);
      return kUnavailable;
    case CapacityReading::Outcome::known:
      break;
  }
  const std::string text = std::to_string(reading.bytes);
  cached(kind).set(text);
  return text;
}

}  // namespace

std::string modelName() {
  return modelName(Platform::current()->device->machine());
}

std::string modelName(std::string_view identifier) {
  if (const auto name = marketingName(identifier)) return std::string(*name);
  std::string text(identifier);
  std::replace(text.begin(), text.end(), ',', '.');
  return text;
}

std::string deviceOs() {
  return Constants::OPERATING_SYSTEM;
}

std::string osVersion() {
  return Platform::current()->device->systemVersion();
}

std::string deviceId() {
  return Platform::current()->device->vendorIdentifier().value_or("");
}

std::string DeviceStatusHelper::batteryLevel() {
  const float percents = Platform::current()->device->batteryLevel() * 100.0F;
  if (!std::isfinite(percents) || std::abs(percents) >= 9223372036854775808.0F) {
    fatalError("the battery level is no whole number");
  }
  return std::to_string(static_cast<std::int64_t>(percents));
}

std::string DeviceStatusHelper::totalDiskCapacity() {
  return capacity(VolumeCapacity::total, "Total disk capacity is unavailable");
}

std::string DeviceStatusHelper::availableDiskCapacity() {
  return capacity(VolumeCapacity::available, "Available disk capacity is unavailable");
}

}  // namespace kifo
