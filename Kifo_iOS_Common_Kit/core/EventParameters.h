#pragma once

#include "Kifo_iOS_Common_Kit/ports/Value.h"

namespace kifo {

/// An event's flat dictionary. The values of the SDK's own keys are texts, whole numbers and
/// booleans; a host's may be anything.
using EventParameters = Value::Map;

/// Whatever a push carries: a map. Any other value counts as a push that carries nothing.
using UserInfo = Value;

}  // namespace kifo
