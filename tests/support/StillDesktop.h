#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "tests/support/Common.h"

namespace kifo::testing {

/// Configuration directories of a desktop whose user wants no animations, while it lives.
class StillDesktop {
 public:
  struct Settings {
    const char* file;
    const char* text;
  };
  static constexpr Settings plasma{"kdeglobals", "[KDE]\nAnimationDurationFactor=0\n"};
  static constexpr Settings gtk3{"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=0\n"};
  static constexpr Settings gtk4{"gtk-4.0/settings.ini",
                                 "[Settings]\ngtk-enable-animations=false\n"};

  explicit StillDesktop(const Settings& settings = plasma) {
    const QString path = directory_.filePath(QString::fromLatin1(settings.file));
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(settings.text);
    qputenv(kVariable, directory_.path().toUtf8());
  }
  ~StillDesktop() { before_.isNull() ? qunsetenv(kVariable) : qputenv(kVariable, before_); }
  StillDesktop(const StillDesktop&) = delete;
  StillDesktop& operator=(const StillDesktop&) = delete;

 private:
  static constexpr const char* kVariable = "XDG_CONFIG_HOME";
  const QByteArray before_ = qgetenv(kVariable);
  const QTemporaryDir directory_;
};

}  // namespace kifo::testing
