#pragma once

#include <nlohmann/json.hpp>

namespace kifo {

/// An event's flat JSON object: keys in the order of their bytes, values as JSON. The values of the
/// SDK's own keys are strings, 64-bit integers and booleans; a host's may be anything.
using EventParameters = nlohmann::json::object_t;

}  // namespace kifo
