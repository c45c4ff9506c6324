#pragma once

#include <QObject>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Deletes `object` once nothing on the stack can be using it any more; a null one is fine.
///
/// `deleteLater` alone forgets its objects when the event loop has already ended, as it has for an
/// alert that is still open when `main` returns. These are deleted with the application instead.
///
/// **Threading:** UI thread only.
KIFO_SHARED void disposeLater(QObject* object);

}  // namespace kifo
