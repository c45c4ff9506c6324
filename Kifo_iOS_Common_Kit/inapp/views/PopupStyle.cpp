#include "Kifo_iOS_Common_Kit/inapp/views/PopupStyle.h"

#include <QApplication>
#include <QWidget>

namespace kifo {
namespace {

bool hasStyleSheet(const QWidget* widget) {
  if (!qApp->styleSheet().isEmpty()) return true;
  for (; widget; widget = widget->parentWidget()) {
    if (!widget->styleSheet().isEmpty()) return true;
  }
  return false;
}

}  // namespace

void keepHostStyleOut(QWidget& popup) {
  if (!hasStyleSheet(popup.parentWidget())) return;
  popup.setStyleSheet(QStringLiteral(
      "#PopUpWindow * { background: transparent; border: none; margin: 0; padding: 0;"
      " min-width: 0; min-height: 0; }"
      "#PopUpWindow { background: transparent; border: none; }"));
}

}  // namespace kifo
