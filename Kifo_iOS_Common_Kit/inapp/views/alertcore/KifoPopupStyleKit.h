#pragma once

#include <QColor>
#include <QPainter>
#include <QPixmap>
#include <QRectF>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyle.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Draws the alert's icons. They are shapes and not pictures, so they are crisp at every size and
/// scale, and take any colour.
///
///     KifoPopupStyleKit::draw(painter, rect, KifoPopupStyle::success, Qt::white);
///
/// **Threading:** no state; a `QPixmap` wants the UI thread, drawing on an image does not.
class KIFO_EXPORT KifoPopupStyleKit {
 public:
  /// Draws the icon of `style` into the largest square in the middle of `rect`.
  static void draw(QPainter& painter, const QRectF& rect, KifoPopupStyle style,
                   const QColor& color);
  /// The icon of `style` on a clear ground, `side` logical pixels wide and high.
  static QPixmap image(KifoPopupStyle style, double side, const QColor& color,
                       double devicePixelRatio);
};

}  // namespace kifo
