#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "platform/qt/QtPasteboard.h"
#ifdef KIFO_HAS_QT_POSITIONING
#include "platform/qt/QtPositionSource.h"
#endif

namespace kifo {

/// The platform with the services that hosts with Qt Widgets and with Qt Quick share: the
/// pasteboard and, where Qt Positioning is there, the position.
inline Platform withQtServices(Platform platform) {
  platform.pasteboard = std::make_shared<QtPasteboard>();
#ifdef KIFO_HAS_QT_POSITIONING
  platform.position = std::make_shared<QtPositionSource>();
#endif
  return platform;
}

}  // namespace kifo
