#pragma once

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

/// Tells the inspector, when there is one, what was decided:
///
///     KIFO_INSPECT("gated", {{"requestId", id}, {"gate", "network"}});
///
/// The arguments are built only if an inspector is installed.
#define KIFO_INSPECT(kind, ...)                                                           \
  do {                                                                                    \
    if (const auto kifoPlatform = ::kifo::Platform::current(); kifoPlatform->inspector) { \
      kifoPlatform->inspector->decided(::kifo::Decision{kind, __VA_ARGS__});              \
    }                                                                                     \
  } while (false)

}  // namespace kifo
