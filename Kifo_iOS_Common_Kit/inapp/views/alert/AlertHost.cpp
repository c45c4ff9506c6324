#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertHost.h"

#include <QApplication>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertOverlay.h"

namespace kifo {
namespace {

// Menus, tooltips, splash screens and our own windows come and go too quickly to be shown over.
bool canHost(const QWidget* window) {
  const Qt::WindowType type = window->windowType();
  return window->isVisible() && (type == Qt::Window || type == Qt::Dialog || type == Qt::Sheet) &&
         qobject_cast<const AlertOverlay*>(window) == nullptr;
}

QWidget* lastVisibleWindow() {
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (canHost(*window)) return *window;
  }
  return nullptr;
}

}  // namespace

QWidget* AlertHost::windowFor(QWidget* wished) {
  if (wished != nullptr) return wished->window();
  for (QWidget* window : {QApplication::activeModalWidget(), QApplication::activeWindow()}) {
    if (window != nullptr && canHost(window)) return window;
  }
  return lastVisibleWindow();
}

}  // namespace kifo
