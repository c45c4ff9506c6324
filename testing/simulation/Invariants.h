#pragma once

#include <optional>
#include <string>

#include "testing/simulation/Ledger.h"

namespace kifo::testing::simulation {

/// The name of the first invariant that does not hold, with what it is about; none when all hold.
/// Looks at the events that changed since the last call. `isIdle`: no queue has work, so that what
/// the SDK still has to do cannot be the reason.
std::optional<std::string> brokenInvariant(Ledger& ledger, bool isIdle);

}  // namespace kifo::testing::simulation
