#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/DeviceProbe.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "platform/linux/CachedReading.h"

namespace kifo {

/// The charge of the machine's batteries, from the entries of a directory like
/// /sys/class/power_supply: 0.0 to 1.0, -1.0 when it is unknown. Batteries of peripherals are
/// ignored. Several are weighted by their capacity when all give it in the same unit, else equally.
float batteryLevelIn(const std::string& folder);

/// The device as described by uname, /etc/os-release, /etc/machine-id, /sys and statvfs.
/// The vendor identifier is a hash of the machine's id and the application's: it reveals neither,
/// and two applications on one machine have different ones.
///
/// **Threading:** thread-safe. Constant facts are read once, when first needed; battery and
/// capacities are read again at most every ten seconds, on the queue.
class LinuxDeviceProbe final : public DeviceProbe {
 public:
  struct Options {
    std::string applicationIdentifier;
    std::string root = {};  ///< Prepended to every path, for tests.
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
