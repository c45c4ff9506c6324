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
  application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
}

}  // namespace kifo::tool
