#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo {

/// The system's knowledge of how a target can be reached.
///
/// **Threading:** externally synchronised, but for `flags`, which may be called from any thread.
/// The change callback runs on the queue that was set.
/// **Errors:** operations return 0 or the system's error code.
class KIFO_EXPORT ReachabilitySource {
 public:
  using Changed = std::function<void()>;
  using Describe = std::function<std::string()>;

  virtual ~ReachabilitySource() = default;

  /// Reads the current flags (the bits of `KifoReachability`).
  virtual int flags(std::uint32_t& flags) = 0;

  /// Has `changed` called whenever the flags may have changed; an empty one removes it. `describe`
  /// names the watcher for diagnostics. After the removal returns no call begins any more, except
  /// for one that is running on another thread.
  virtual int setCallback(Changed changed, Describe describe) = 0;

  /// Chooses the queue on which `changed` runs; null stops the calls.
  virtual int setDispatchQueue(std::shared_ptr<SerialQueue> queue) = 0;
};

/// Makes reachability sources.
class KIFO_EXPORT ReachabilityService {
 public:
  using Address =
      std::array<std::uint8_t, 16>;  ///< An IPv4 socket address as the system lays it out.

  virtual ~ReachabilityService() = default;

  /// A source for `address`, the zero address standing for the network as a whole. Null, with
  /// `error` set to the system's code, when the system gives none.
  virtual std::unique_ptr<ReachabilitySource> createWithAddress(const Address& address,
                                                                int& error) = 0;
};

}  // namespace kifo
