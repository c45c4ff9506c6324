#pragma once

namespace kifo {

/// Where an alert's card stands: in the middle of the window, or at its upper edge as notifications
/// do.
enum class ScreenType { popup, notification };

}  // namespace kifo
