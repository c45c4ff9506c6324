#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "platform/linux/LinuxConsole.h"

namespace kifo {

/// Ends the SDK's threads when a process exits without shutting the SDK down: before the libraries
/// that they use are unloaded, and within half a second whatever they do.
/// Tasks on the main queue still run while there is time. The other queues call the host, whose
/// objects may be destroyed already, so their tasks are dropped.
///
/// **Threading:** thread-safe. A forked child that exits leaves its parent's threads alone.
class ExitGuard {
 public:
  struct Parts {
    std::weak_ptr<HttpTransport> http;
    std::weak_ptr<SerialQueue> answerQueue;
    std::weak_ptr<SerialQueue> reachabilityQueue;
    std::weak_ptr<SerialQueue> mainQueue;
    std::weak_ptr<LinuxConsole> console;
  };

  static void watch(Parts parts);  /// Registers the guard's exit handler again, so that it runs
                                   /// before those registered so far. To be
  /// called after a library with exit handlers was initialised.
  static void comeFirst();
};

}  // namespace kifo
