#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupKeyboard.h"

#include <utility>

#include <QGuiApplication>
#include <QInputMethod>

namespace kifo {

PopupKeyboard::PopupKeyboard(QObject* window) : QObject(window) {
  const QInputMethod* method = QGuiApplication::inputMethod();
  connect(method, &QInputMethod::visibleChanged, this, &PopupKeyboard::follow);
  connect(method, &QInputMethod::keyboardRectangleChanged, this, &PopupKeyboard::follow);
}

/// A keyboard that changes its height is one that goes and comes.
void PopupKeyboard::follow() {
  const QInputMethod* method = QGuiApplication::inputMethod();
  hide();
  if (method->isVisible()) show(method->keyboardRectangle());
}

void PopupKeyboard::show(const QRectF& keyboard) {
  if (keyboard.height() < 1 || height_ > 0) return;
  height_ = static_cast<int>(keyboard.height());
  Q_EMIT moved();
}

void PopupKeyboard::hide() {
  if (std::exchange(height_, 0) == 0) return;
  Q_EMIT moved();
}

}  // namespace kifo
