#include "Kifo_iOS_Common_Kit/inapp/views/shared/HostStyleSheet.h"

#include <QApplication>
#include <QWidget>

namespace kifo {

bool isUnderStyleSheet(const QWidget* widget) {
  if (!qApp->styleSheet().isEmpty()) return true;
  for (; widget; widget = widget->parentWidget()) {
    if (!widget->styleSheet().isEmpty()) return true;
  }
  return false;
}

void keepHostStyleOut(QWidget& popup) {
  if (!isUnderStyleSheet(popup.parentWidget())) return;
  popup.setStyleSheet(QStringLiteral(
      "#PopUpWindow * { background: transparent; border: none; margin: 0; padding: 0;"
      " min-width: 0; min-height: 0; }"
      "#PopUpWindow { background: transparent; border: none; }"));
}

}  // namespace kifo
