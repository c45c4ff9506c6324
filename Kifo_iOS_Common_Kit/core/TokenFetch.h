#pragma once

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Asks the host's token service for a token and waits for it, at most the service's `kifoTimeout`
/// seconds (3 seconds when there is no service). A token becomes the session's `authorization`; the
/// answer "none" sets the status `INITIALIZE_FAILED`. An answer that comes after the wait still
/// counts.
///
/// **Threading:** blocks the calling thread: the one that initialises, or the answer queue. The
/// SDK's stopping ends the wait.
KIFO_EXPORT void fetchToken();

/// Ends every wait for a token, now and later, until `allow` is called; for the SDK's stopping.
class KIFO_EXPORT TokenWaits {
 public:
  static void end();
  static void allow();
};

}  // namespace kifo
