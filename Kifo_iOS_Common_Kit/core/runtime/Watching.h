#pragma once

namespace kifo {

/// Opens the platform's `WatchService` for tools, with what they may see of the runtime in force.
/// Says on the console whether that is possible.
///
/// **Threading:** thread-safe.
void startWatching();

/// The same if the environment says KIFO_WATCH=1. To be called while the host is not changing it.
void startWatchingIfAsked();

}  // namespace kifo
