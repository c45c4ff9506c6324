#pragma once

#include <optional>
#include <string_view>

namespace kifo {

/// The marketing name of a hardware identifier such as "iPhone13,2"; none for one that is not
/// listed.
std::optional<std::string_view> marketingName(std::string_view identifier);

}  // namespace kifo
