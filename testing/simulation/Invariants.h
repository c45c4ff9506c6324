#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Statistics.h"
#include "testing/simulation/Ledger.h"

namespace kifo::testing::simulation {

/// The name of the first invariant that does not hold, with what it is about; none when all hold.
/// Looks at the events that changed since the last call. `isIdle`: no queue has work, so that what
/// the SDK still has to do cannot be the reason.
std::optional<std::string> brokenInvariant(Ledger& ledger, bool isIdle);

/// Requests of events that have no answer yet, and their rows that would wait without them.
struct UnderWay {
  std::int64_t requests = 0;
  std::int64_t rows = 0;
};

/// The counter that does not say what the world has seen, when nothing is left to do.
std::optional<std::string> wrongCounter(const Ledger& ledger, const Counts& counts,
                                        const UnderWay& underWay);

}  // namespace kifo::testing::simulation
