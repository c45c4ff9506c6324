#include "Kifo_iOS_Common_Kit/inapp/views/looks/DesktopMotion.h"

#include <QSettings>
#include <QStandardPaths>

namespace kifo {
namespace {

QVariant setting(const QString& file, const QString& key, const QVariant& otherwise) {
  const QString path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, file);
  return path.isEmpty() ? otherwise : QSettings(path, QSettings::IniFormat).value(key, otherwise);
}

}  // namespace

bool desktopAnimates() {
  const auto gtk = [](const char* file) {
    return setting(QString::fromLatin1(file), QStringLiteral("Settings/gtk-enable-animations"),
                   true)
        .toBool();
  };
  const QString factor = QStringLiteral("KDE/AnimationDurationFactor");
  return setting(QStringLiteral("kdeglobals"), factor, 1).toDouble() > 0 &&
         gtk("gtk-3.0/settings.ini") && gtk("gtk-4.0/settings.ini");
}

}  // namespace kifo
