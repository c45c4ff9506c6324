#pragma once

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Whether the user's desktop allows animations, by the settings that Plasma
/// ("AnimationDurationFactor" of kdeglobals) and GTK ("gtk-enable-animations") keep in the
/// configuration directories. True where neither says anything.
///
/// **Threading:** UI thread only; reads three small files.
[[nodiscard]] KIFO_SHARED bool desktopAnimates();

}  // namespace kifo
