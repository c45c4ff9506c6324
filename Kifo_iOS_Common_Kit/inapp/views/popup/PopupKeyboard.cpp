#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupKeyboard.h"

#include <utility>

#include <QGuiApplication>
#include <QInputMethod>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupState.h"

namespace kifo {

PopupKeyboard::PopupKeyboard(PopupState& fields, QObject* window)
    : QObject(window), fields_(fields) {
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
  if (keyboard.height() <= 0 || std::exchange(fields_.isKeyboardSizeAdded, true)) return;
  height_ = static_cast<int>(keyboard.height());
  Q_EMIT moved();
}

void PopupKeyboard::hide() {
  if (!std::exchange(fields_.isKeyboardSizeAdded, false)) return;
  height_ = 0;
  Q_EMIT moved();
}

}  // namespace kifo
