#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/DeviceProbe.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "platform/linux/CachedReading.h"

namespace kifo {

/// The charge of the machine's batteries as the folder /sys/class/power_supply tells it: 0.0
/// to 1.0, -1.0 when there is none or none says. Batteries of mice and headsets do not count.
/// Several count by their size when all tell it in the same unit, evenly otherwise.
float batteryLevelIn(const std::string& folder);

/// The device as uname, /etc/os-release, /etc/machine-id, /sys and statvfs tell it.
///
/// The vendor identifier is computed from the machine's id and the application's: it tells neither,
/// and two applications on one machine have different ones.
///
/// **Threading:** thread-safe. What never changes is read when it is first asked for; battery and
/// capacities are read again every ten seconds at most, on the queue.
class LinuxDeviceProbe final : public DeviceProbe {
 public:
  struct Options {
    std::string applicationIdentifier;
    std::string root = {};  ///< Stands before every path, for tests.
  };

  LinuxDeviceProbe(std::shared_ptr<SerialQueue> queue, const Options& options);

  [[nodiscard]] std::string machine() const override { return machine_.get(); }
  [[nodiscard]] std::string systemVersion() const override { return systemVersion_.get(); }
  [[nodiscard]] std::optional<std::string> vendorIdentifier() const override {
    return vendorIdentifier_.get();
  }
  [[nodiscard]] float batteryLevel() const override { return batteryLevel_.get(); }
  [[nodiscard]] CapacityReading capacity(VolumeCapacity kind) const override;

 private:
  struct Capacities {
    CapacityReading total;
    CapacityReading available;
  };
  static Capacities capacitiesOf(const std::string& path);

  CachedReading<std::string> machine_;
  CachedReading<std::string> systemVersion_;
  CachedReading<std::optional<std::string>> vendorIdentifier_;
  CachedReading<float> batteryLevel_;
  CachedReading<Capacities> capacities_;
};

}  // namespace kifo
