#pragma once

#include <QPoint>
#include <QString>

class QAbstractSlider;
class QWidget;

namespace kifo::tool {

/// A user's hand: what it does reaches a widget as the window system's own events would.
///
/// **Threading:** UI thread only.
struct WidgetHand {
  static void click(QWidget& widget, QPoint place);
  static void click(QWidget& widget);  ///< In its middle.
  static void type(QWidget& widget, const QString& text);
  static void slide(QAbstractSlider& slider, int value);
};

}  // namespace kifo::tool
