#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Clock.h"

namespace kifo {

/// UUIDs from the kernel's generator. Nothing is kept between two calls, so that a forked process
/// cannot repeat its parent's.
///
/// **Threading:** thread-safe.
class KernelIdentifiers final : public RandomIdentifiers {
 public:
  std::string uuid() override;
};

/// 16 bytes as an upper-case version 4 UUID; its six fixed bits replace those of the bytes.
std::string uuidOf(std::array<std::uint8_t, 16> bytes);

}  // namespace kifo
