#pragma once

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

/// A platform whose every service answers "nothing": queues drop their tasks, requests end with the
/// error "cancelled", nothing is stored, no flags can be read. What a host leaves out of its own
/// platform is taken from here.
KIFO_EXPORT Platform nullPlatform();

}  // namespace kifo
