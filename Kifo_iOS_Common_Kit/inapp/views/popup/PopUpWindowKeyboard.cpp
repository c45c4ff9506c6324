#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowKeyboard.h"

#include <utility>

#include <QGuiApplication>
#include <QInputMethod>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowFields.h"

namespace kifo {

PopUpWindowKeyboard::PopUpWindowKeyboard(PopUpWindowFields& fields, QObject* window)
    : QObject(window), fields_(fields) {
  const QInputMethod* method = QGuiApplication::inputMethod();
  connect(method, &QInputMethod::visibleChanged, this, &PopUpWindowKeyboard::follow);
  connect(method, &QInputMethod::keyboardRectangleChanged, this, &PopUpWindowKeyboard::follow);
}

/// A keyboard that changes its height is one that goes and comes.
void PopUpWindowKeyboard::follow() {
  const QInputMethod* method = QGuiApplication::inputMethod();
  hide();
  if (method->isVisible()) show(method->keyboardRectangle());
}

void PopUpWindowKeyboard::show(const QRectF& keyboard) {
  if (keyboard.height() <= 0 || std::exchange(fields_.isKeyboardSizeAdded, true)) return;
  height_ = static_cast<int>(keyboard.height());
  Q_EMIT moved();
}

void PopUpWindowKeyboard::hide() {
  if (!std::exchange(fields_.isKeyboardSizeAdded, false)) return;
  height_ = 0;
  Q_EMIT moved();
}

}  // namespace kifo
