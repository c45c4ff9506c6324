#pragma once

#include <functional>
#include <map>
#include <string>

#include "apps/kifo/host/Arguments.h"
#include "apps/kifo/host/Output.h"

namespace kifo::tool {

/// One of the SDK's static properties.
struct Property {
  std::function<Output::Line()> get;
  /// Reads the argument "value" and sets the property to it; empty for one that only the SDK sets.
  std::function<void(Arguments&)> set = {};
};

/// The SDK's properties by "Class.property".
const std::map<std::string, Property>& properties();

}  // namespace kifo::tool
