#pragma once

class QWidget;

namespace kifo {

/// Paints a widget with all that lies in it as if it were this opaque, 0 to 1. At 1 it costs
/// nothing.
///
/// **Threading:** UI thread only.
void setPaintedOpacity(QWidget& widget, double opacity);

}  // namespace kifo
