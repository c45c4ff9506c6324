#pragma once

#include <memory>
#include <string>

namespace kifo {

class KifoReachability;

/// What the system's callback holds of a watcher: enough to find it, not enough to keep it alive.
///
/// **Threading:** immutable.
struct KifoReachabilityWeakifier {
  std::weak_ptr<KifoReachability> reachability;

  /// The watcher's flags as text; "nil" when the watcher is gone.
  [[nodiscard]] std::string description() const;
};

}  // namespace kifo
