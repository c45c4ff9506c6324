#pragma once

#include <QRectF>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QPainter;

namespace kifo {

/// The soft shadow that lifts the panel off the dimmed host; there is none under the panel, which
/// may be translucent, as it is while it fades. It is blurred once for each device scale; the sides
/// of a larger panel repeat the middle of that picture.
///
/// **Threading:** UI thread only.
struct KIFO_SHARED PanelShadow {
  static constexpr int reach = 32;  ///< How far the shadow extends beyond the panel.

  static void paint(QPainter& painter, const QRectF& panel, double cornerRadius);
};

}  // namespace kifo
