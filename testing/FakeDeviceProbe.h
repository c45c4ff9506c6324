#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/DeviceProbe.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A device whose readings the test sets.
class FakeDeviceProbe final : public DeviceProbe {
 public:
  struct Readings {
    std::string machine = "x86_64";
    std::string systemVersion = "12";
    std::optional<std::string> vendorIdentifier = "0D0A5E7A-3B1C-4F7E-9A52-6C1E88D4F001";
    float batteryLevel = 0.5F;
    CapacityReading total = {CapacityReading::Outcome::known, 500'000'000'000};
    CapacityReading available = {CapacityReading::Outcome::known, 125'000'000'000};
  };

  [[nodiscard]] std::string machine() const override { return readings.get().machine; }
  [[nodiscard]] std::string systemVersion() const override { return readings.get().systemVersion; }
  [[nodiscard]] std::optional<std::string> vendorIdentifier() const override {
    return readings.get().vendorIdentifier;
  }
  [[nodiscard]] float batteryLevel() const override { return readings.get().batteryLevel; }
  [[nodiscard]] CapacityReading capacity(VolumeCapacity kind) const override {
    const Readings now = readings.get();
    return kind == VolumeCapacity::total ? now.total : now.available;
  }

  /// `fake.readings.update([](auto& now) { now.batteryLevel = 0.2F; });`
  Scripted<Readings> readings;
};

}  // namespace kifo::testing
