#pragma once

#include <string>

namespace kifo {

/// The charge of the machine's batteries as the folder /sys/class/power_supply tells it: 0.0
/// to 1.0, -1.0 when there is none or none says. Batteries of mice and headsets do not count.
/// Several count by their size when all tell it in the same unit, evenly otherwise.
float batteryLevelIn(const std::string& folder);

}  // namespace kifo
