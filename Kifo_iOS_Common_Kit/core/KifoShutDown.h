#pragma once

namespace kifo {

/// Stops the SDK within `bound` seconds: what is queued reaches the store and the server, what is
/// under way gets its answer if there is time, then the threads end. Whether all of it was done.
bool shutDown(double bound);

/// Makes the SDK usable again after `shutDown`.
void resumeAfterShutDown();

}  // namespace kifo
