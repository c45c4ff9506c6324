#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"

#include <QKeyEvent>
#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Accessibility.h"

namespace kifo {

PopupPanel::PopupPanel(const PopupTheme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {}

void PopupPanel::setPressable(const QString& accessibleName) {
  setFocusPolicy(Qt::TabFocus);
  setAccessibleName(accessibleName);
  setAccessibleRole(this, QAccessible::Link);
}

void PopupPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, theme_, rect(), hasFocus());
}

void PopupPanel::keyPressEvent(QKeyEvent* event) {
  const bool press = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                     event->key() == Qt::Key_Space;
  if (!press || event->isAutoRepeat()) return event->ignore();
  Q_EMIT pressed();
}

void PopupPanel::focusInEvent(QFocusEvent*) {
  update();
}
void PopupPanel::focusOutEvent(QFocusEvent*) {
  update();
}

}  // namespace kifo
