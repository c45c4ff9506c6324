#pragma once

namespace kifo::tool {

/// What popups are drawn with.
enum class Toolkit { widgets, quick };

}  // namespace kifo::tool
