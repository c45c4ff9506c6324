#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Clock.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "platform/linux/CachedReading.h"

namespace kifo {

/// UUIDs from the kernel's random generator. No state is kept between calls, so that a forked
/// process cannot repeat its parent's.
///
/// **Threading:** thread-safe.
class KernelIdentifiers final : public RandomIdentifiers {
 public:
  std::string uuid() override;
};

/// 16 bytes as an upper-case version 4 UUID; its six fixed bits replace those of the bytes.
std::string uuidOf(std::array<std::uint8_t, 16> bytes);

/// The system's clock, in the zone that TZ, /etc/localtime or /etc/timezone names; "UTC" when none
/// of them names one.
///
/// **Threading:** thread-safe. TZ is read once, when the clock is made: reading the environment is
/// not safe while a host changes it. The files are read again at most every ten seconds, on the
/// queue.
class LinuxClock final : public Clock {
 public:
  /// `root` is prepended to every path, for tests; `tz` is the value of TZ, empty when unset.
  LinuxClock(std::shared_ptr<SerialQueue> queue, const std::string& tz, std::string root = {});

  [[nodiscard]] std::int64_t millisecondsSince1970() const override;
  [[nodiscard]] std::string timeZone() const override { return zone_.get(); }

 private:
  CachedReading<std::string> zone_;
};

}  // namespace kifo
