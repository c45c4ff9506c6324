#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

class Runtime;

/// Fetches an authorization token from the host's token service.
///
/// **Threading:** thread-safe.
class TokenFetch {
 public:
  /// Asks the service of the runtime's session for a token and waits for it, at most the service's
  /// `kifoTimeout` seconds (3 seconds when there is no service). A token becomes the session's
  /// `authorization`; the answer "none" sets the status `INITIALIZE_FAILED`. An answer that comes
  /// after the wait still counts, for the runtime that asked.
  ///
  /// Blocks the calling thread: the one that initialises, or the answer queue. `end` ends the wait.
  static void run(const std::shared_ptr<Runtime>& runtime);

  /// Ends every wait, now and later.
  void end();

 private:
  Mutex mutex_;
  ConditionVariable changed_;
  bool ended_ KIFO_GUARDED_BY(mutex_) = false;
};

}  // namespace kifo
