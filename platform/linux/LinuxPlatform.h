#pragma once

#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

/// What a host may choose about the SDK's Linux services. Every field has a sensible default.
struct LinuxPlatformOptions {
  /// Where "KifoLog.db" and the user defaults lie. Empty: `$XDG_DATA_HOME/<program>/kifo`, with
  /// ~/.local/share for an unset `XDG_DATA_HOME`; where nothing can be written, one below the
  /// system's temporary directory, with a line on the console. Made, for this user alone, when it
  /// is needed.
  std::string documentsDirectory = {};
  /// What makes the device identifier this application's own. Empty: the program's name.
  std::string applicationIdentifier = {};
  /// The largest answer taken from a server, in bytes after decompression.
  std::size_t maximumAnswerSize = 8u << 20;
  /// A file of certificates, in PEM form, to trust in place of the system's; for a closed network
  /// with an authority of its own. Empty: the system's.
  std::string certificateAuthorities = {};
  /// Not empty: reachability means a route to each of these endpoints (the API's and the listener's
  /// addresses) instead of a default route; for hosts on loopback or on a closed network.
  std::vector<std::string> reachabilityTargets = {};
};

/// The services of a Linux system: three queues, HTTP over libcurl, values in a file, the network
/// as the kernel sees it, lines on standard error. No position, no notifications and no popups,
/// which need a desktop (see `platform/qt/`).
///
/// **Threading:** threads, four in all, start when they are first needed. To be called, like
/// everything that reads the environment, while the host is not changing it.
/// **Errors:** a process that exits without having shut the SDK down does not hang for it: the
/// threads are ended within half a second.
KIFO_EXPORT Platform makeLinuxPlatform(const LinuxPlatformOptions& options = {});

}  // namespace kifo
