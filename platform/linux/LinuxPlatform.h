#pragma once

#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

/// What a host may choose about the SDK's Linux services. Every field has a sensible default.
struct LinuxPlatformOptions {
  /// Where "KifoLog.db" and the user defaults lie. Empty: `$XDG_DATA_HOME/<program>/kifo`, with
  /// ~/.local/share for an unset `XDG_DATA_HOME`. Made when it is first written to.
  std::string documentsDirectory;
  /// What makes the device identifier this application's own. Empty: the program's name.
  std::string applicationIdentifier;
  /// The largest answer taken from a server, in bytes after decompression.
  std::size_t maximumAnswerSize = 8u << 20;
  /// Not empty: reachability means a route to each of these endpoints (the API's and the listener's
  /// addresses) instead of a default route; for hosts on loopback or on a closed network.
  std::vector<std::string> reachabilityTargets;
};

/// The services of a Linux system. Threads start when they are first needed.
KIFO_EXPORT Platform makeLinuxPlatform(const LinuxPlatformOptions& options = {});

}  // namespace kifo
