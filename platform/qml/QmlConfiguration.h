#pragma once

#include <QJSValue>

#include "Kifo_iOS_Common_Kit/core/KifoInitConfig.h"

namespace kifo {

/// The configuration that a QML host writes as `{ apiUri: "https://…", applicationName: "kiosk" }`,
/// with the names of `KifoInitConfig`. "bundle" is the bundle's identifier; the two life-cycle
/// switches are booleans. A token service is C++ only.
///
/// **Threading:** the engine's thread.
/// **Errors:** a name that does not exist and a value of a wrong type are console lines, and the
/// member keeps its default.
[[nodiscard]] KifoInitConfig configurationOf(const QJSValue& values);

}  // namespace kifo
