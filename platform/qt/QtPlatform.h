#pragma once

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

/// `platform` with the services that Qt gives a desktop application: popups, the clipboard and,
/// where the library was built with Qt Positioning, the position.
///
///     QApplication application(argc, argv);
///     kifo::Platform::install(kifo::withQt(kifo::Platform::makeDefault()));
///     kifo::Kifo::initialize(configuration);
///
/// **Threading:** UI thread, once the QApplication exists.
KIFO_EXPORT Platform withQt(Platform platform, PopUpOptions options = {});

}  // namespace kifo
