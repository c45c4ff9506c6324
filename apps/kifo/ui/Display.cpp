#include "apps/kifo/ui/Display.h"

namespace kifo::tool {
namespace {

bool isSet(const char* variable) {
  return !qEnvironmentVariableIsEmpty(variable);
}

}  // namespace

Display::Display(const char* name, bool isVisible) : arguments_{const_cast<char*>(name), nullptr} {
  const bool hasScreen = isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
  if (!isSet("QT_QPA_PLATFORM") && !(hasScreen && isVisible)) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  // Scenes are drawn without a graphics card there.
  const bool isOffscreen = qgetenv("QT_QPA_PLATFORM") == "offscreen";
  if (isOffscreen && !isSet("QT_QUICK_BACKEND")) qputenv("QT_QUICK_BACKEND", "software");
  application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
}

}  // namespace kifo::tool
