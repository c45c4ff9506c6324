#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QRectF>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyle.h"

namespace kifo {

/// What stands inside an alert's circle: the host's image, the style's drawn icon, or a turning
/// indicator.
///
/// **Threading:** UI thread only.
struct KIFO_SHARED AlertIcon {
  enum class Kind { none, image, icon, indicator };

  /// The indicator's spokes: one turn in about a second is smooth to the eye and next to nothing
  /// for a processor.
  static constexpr int kSteps = 12;
  static constexpr int kStepMilliseconds = 80;

  Kind kind = Kind::none;  ///< None: there is no circle.
  QIcon image;
  KifoPopupStyle style = KifoPopupStyle::info;
  QColor color;      ///< For an image its tint; invalid for none.
  double scale = 1;  ///< In relation to the appearance's size.

  /// `step`: how far the indicator has turned, 0 to `kSteps` - 1.
  void paint(QPainter& painter, const QRectF& rect, int step) const;

 private:
  void paintImage(QPainter& painter, const QRectF& rect) const;
  void paintIndicator(QPainter& painter, const QRectF& rect, int step) const;
};

}  // namespace kifo
