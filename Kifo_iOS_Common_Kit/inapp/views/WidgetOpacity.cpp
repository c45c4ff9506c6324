#include "Kifo_iOS_Common_Kit/inapp/views/WidgetOpacity.h"

#include <QGraphicsOpacityEffect>
#include <QWidget>

namespace kifo {

void setPaintedOpacity(QWidget& widget, double opacity) {
  if (opacity >= 1) return widget.setGraphicsEffect(nullptr);
  auto* effect = qobject_cast<QGraphicsOpacityEffect*>(widget.graphicsEffect());
  if (!effect) widget.setGraphicsEffect(effect = new QGraphicsOpacityEffect);
  effect->setOpacity(opacity);
}

}  // namespace kifo
