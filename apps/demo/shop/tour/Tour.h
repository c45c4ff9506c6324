#pragma once

#include <QString>
#include <QWidget>

#include "testing/server/LocalServer.h"

namespace kifo::shop {

class PushTourDesktop;

/// Visits the shop without a person: uses everything in it, keeps a picture of each state in
/// `folder`, and checks what the server received. Each stop, and what went wrong at it, is printed.
/// Whether all went as it should.
///
/// **Threading:** UI thread only; runs the event loop.
bool runTour(QWidget& window, testing::LocalServer& server, PushTourDesktop& desktop,
             const QString& folder);

}  // namespace kifo::shop
