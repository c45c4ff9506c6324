#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"

namespace kifo {

/// Why a watcher could not be made or could not go on.
///
/// **Threading:** a plain value.
struct KifoReachabilityError {
  enum class Kind {
    failedToCreateWithAddress,
    failedToCreateWithHostname,
    unableToSetCallback,
    unableToSetDispatchQueue,
    unableToGetFlags,
  };

  Kind kind;
  int code = 0;  ///< The system's own number, an `errno` on Linux.
  std::optional<ReachabilityService::Address> address;  ///< With failedToCreateWithAddress.
  std::optional<std::string> hostname;                  ///< With failedToCreateWithHostname.

  friend bool operator==(const KifoReachabilityError&, const KifoReachabilityError&) = default;
};

}  // namespace kifo
