#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A text as it is laid out: at most `kMostShown` characters of `text` with an ellipsis in place of
/// what follows, since laying out takes ever longer; and without control characters other than line
/// breaks and tabulators, which fonts show as boxes. `text` is UTF-8.
///
/// **Threading:** a pure function.
KIFO_SHARED std::string shownText(std::string_view text);

constexpr std::size_t kMostShown = 5000;

}  // namespace kifo
