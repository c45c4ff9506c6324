#pragma once

#include <atomic>

#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

/// Whether a tool follows this process.
struct KIFO_SHARED Watch {
  static std::atomic<bool> isOn;
};

/// Whether the host installed an inspector.
KIFO_SHARED bool hasInspector();

/// Tells the host's inspector and the tools that follow this process. Tokens are masked for tools.
KIFO_SHARED void tellDecision(const Decision& decision);

/// Tells the tools alone.
KIFO_SHARED void tellTools(const Decision& decision);

/// Tells the inspector, when there is one, and the tools that follow what was decided:
///
///     KIFO_INSPECT("gated", {{"requestId", id}, {"gate", "network"}});
///
/// The arguments are built only if somebody is told.
#define KIFO_INSPECT(kind, ...)                                                          \
  do {                                                                                   \
    if (::kifo::Watch::isOn.load(std::memory_order_relaxed) || ::kifo::hasInspector()) { \
      ::kifo::tellDecision(::kifo::Decision{kind, __VA_ARGS__});                         \
    }                                                                                    \
  } while (false)

}  // namespace kifo
