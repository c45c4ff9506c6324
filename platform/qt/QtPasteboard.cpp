#include "platform/qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace kifo {

void QtPasteboard::setString(const std::string& text) {
  if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) return;
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

}  // namespace kifo
