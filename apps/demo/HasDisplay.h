#pragma once

#include <QtGlobal>

namespace kifo::demo {

/// Whether there is a display that a person may be looking at. To be asked before the application
/// is made.
///
/// **Threading:** the program's first thread.
inline bool hasDisplay() {
  if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    return qgetenv("QT_QPA_PLATFORM") != "offscreen" && qgetenv("QT_QPA_PLATFORM") != "minimal";
  }
  return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

}  // namespace kifo::demo
