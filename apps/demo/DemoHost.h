#pragma once

#include <QCoreApplication>
#include <QString>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "testing/server/LocalServer.h"

/// What the demo programs with a window share. **Threading:** the program's first thread.
namespace kifo::demo {

/// Whether there is a display that a person may be looking at. To be asked before the application
/// is made.
bool hasDisplay();

/// How a demo was asked to run.
struct Options {
  bool runsTour = false;
  bool isVerbose = false;
  QString output;  ///< Folder for the tour's pictures.
};

/// Reads the command line; `pictures` is the folder unless another is given.
Options optionsOf(const QCoreApplication& application, const QString& pictures);

/// The system's services for a demo that talks to `server` and keeps its files in `home`. Its
/// console is silent unless `isVerbose`.
Platform platformFor(const testing::LocalServer& server, const std::string& identifier,
                     const QString& home, bool isVerbose);

}  // namespace kifo::demo
