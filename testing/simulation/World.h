#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "testing/simulation/Script.h"

namespace kifo::testing::simulation {

/// How a script ended.
struct Outcome {
  std::size_t steps =
      0;  ///< Operations and pieces of work after which the invariants were checked.
  std::optional<std::string> violation;  ///< The invariant that broke; none when all held.
  std::size_t operation = 0;             ///< The operation after which it broke.
};

/// Plays a script in a world of its own: the whole SDK with a clock, a network, a server, a user, a
/// disk and a power switch that the script moves, without a thread. The invariants are checked
/// after every piece of work, and once more after everything was healed and has ended.
///
/// The platform in force and SQLite's default VFS are replaced meanwhile. One world at a time.
Outcome play(const Script& script);

}  // namespace kifo::testing::simulation
