#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "testing/simulation/Script.h"

namespace kifo::testing::simulation {

/// How a script ended.
struct Outcome {
  /// Operations and pieces of work after which the invariants were checked.
  std::size_t steps = 0;
  std::optional<std::string> violation;  ///< The invariant that broke; none when all held.
  std::size_t operation = 0;             ///< The operation after which it broke.
};

/// Plays a script in a world of its own. The invariants are checked after every piece of work, and
/// once more after everything was healed and has ended.
Outcome play(const Script& script);

}  // namespace kifo::testing::simulation
