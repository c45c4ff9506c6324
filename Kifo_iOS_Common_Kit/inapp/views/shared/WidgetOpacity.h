#pragma once

class QWidget;

namespace kifo {

/// Paints a widget with all that lies in it as if it were this opaque, 0 to 1. At 1 it costs
/// nothing.
///
/// While it is less, the widget is painted once and then shown as that picture, so that a frame of
/// a fade costs no text and no shapes. What changes meanwhile is seen with the next picture, a
/// third of a second later at most.
///
/// **Threading:** UI thread only.
void setPaintedOpacity(QWidget& widget, double opacity);

/// Takes the picture for the frames to come now, so that the first of them need not.
void preparePaintedOpacity(QWidget& widget);

}  // namespace kifo
