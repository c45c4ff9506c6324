#pragma once

#include <functional>
#include <map>
#include <string>

#include "apps/kifo/host/Arguments.h"

namespace kifo::tool {

class Host;

/// Reads an operation's arguments and returns what carries it out, so that a line with a mistake
/// does nothing at all.
using Operation = std::function<std::function<void()>(Arguments&, Host&)>;
using Operations = std::map<std::string, Operation>;

/// The SDK's operations by "Class.operation".
const Operations& operations();

void addKifoOperations(Operations& all);
void addEventOperations(Operations& all);
void addPushOperations(Operations& all);

}  // namespace kifo::tool
