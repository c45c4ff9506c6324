#pragma once

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

/// A platform whose services do nothing: queues drop their tasks, requests end with the error
/// "cancelled", nothing is stored, no flags can be read. `Platform::install` takes from here what a
/// host's platform leaves null.
KIFO_EXPORT Platform nullPlatform();

}  // namespace kifo
