#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "platform/linux/LinuxConsole.h"

namespace kifo {

/// Ends the SDK's threads when a process exits that has not shut the SDK down: before the libraries
/// that they use are taken away, and within half a second whatever they are doing.
///
/// What is queued on the main queue still runs, for as long as there is time; the other queues call
/// the host, which may be half gone by then, and drop their tasks.
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

  static void watch(Parts parts);
  /// Puts the guard's handler before those that were registered so far: exit handlers run in the
  /// reverse order. For whoever brought in a library with one.
  static void comeFirst();
};

}  // namespace kifo
