#pragma once

#include <cstdint>

namespace kifo {

/// The bits that say how a target can be reached. A reading of 0 means: not at all.
struct ReachabilityFlags {
  static constexpr std::uint32_t transientConnection = 0x1;  ///< Over a link that comes and goes.
  static constexpr std::uint32_t reachable = 0x2;
  static constexpr std::uint32_t connectionRequired = 0x4;  ///< A connection must be made first …
  static constexpr std::uint32_t connectionOnTraffic = 0x8;    ///< … and traffic makes it,
  static constexpr std::uint32_t interventionRequired = 0x10;  ///< … but somebody must help,
  static constexpr std::uint32_t connectionOnDemand = 0x20;    ///< … and asking for it makes it.
  static constexpr std::uint32_t isLocalAddress = 0x10000;     ///< The target is this very machine.
  static constexpr std::uint32_t isDirect = 0x20000;           ///< Not through a gateway.
  static constexpr std::uint32_t isWWAN = 0x40000;             ///< Through a modem.
};

}  // namespace kifo
