#pragma once

#include <QQuickWindow>
#include <QString>

#include "testing/server/LocalServer.h"

namespace kifo::kiosk {

/// Orders and pays at the kiosk without a person: touches and keys go through the window system.
/// Keeps a picture of each state in `folder` and checks what the server received; what went wrong
/// is printed. Whether all went as it should.
///
/// **Threading:** UI thread only; runs the event loop.
bool runTour(QQuickWindow& window, testing::LocalServer& server, const QString& folder);

}  // namespace kifo::kiosk
