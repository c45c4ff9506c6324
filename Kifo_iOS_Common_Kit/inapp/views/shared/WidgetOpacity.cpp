#include "Kifo_iOS_Common_Kit/inapp/views/shared/WidgetOpacity.h"

#include <QTimer>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/OpacityEffect.h"

namespace kifo {
namespace {

OpacityEffect* effectOf(const QWidget& widget) {
  return qobject_cast<OpacityEffect*>(widget.graphicsEffect());
}

OpacityEffect* effectFor(QWidget& widget) {
  if (!effectOf(widget)) widget.setGraphicsEffect(new OpacityEffect(widget));
  return effectOf(widget);
}

/// The real widget again, in a frame of its own: the one before had a whole fade's work to do.
void removeOpaqueEffect(QWidget& widget) {
  const OpacityEffect* effect = effectOf(widget);
  if (effect && effect->opacity() >= 1) widget.setGraphicsEffect(nullptr);
}

}  // namespace

void setPaintedOpacity(QWidget& widget, double opacity) {
  if (opacity < 1) return effectFor(widget)->setOpacity(opacity);
  OpacityEffect* effect = effectOf(widget);
  if (!effect) return;
  effect->setOpacity(1);
  if (!effect->hasPicture()) return removeOpaqueEffect(widget);
  QTimer::singleShot(0, &widget, [&widget] { removeOpaqueEffect(widget); });
}

void preparePaintedOpacity(QWidget& widget) {
  effectFor(widget)->takePicture();
}

}  // namespace kifo
