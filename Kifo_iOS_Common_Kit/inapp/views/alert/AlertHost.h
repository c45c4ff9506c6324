#pragma once

#include <QWidget>

namespace kifo {

/// Finds the window that an alert without a named one is shown over.
///
/// **Threading:** UI thread only.
class AlertHost {
 public:
  /// The window of `wished`; else the modal dialog that is open, for no other window has input
  /// then; else the active window; else the last one that is visible; null when there is none.
  static QWidget* windowFor(QWidget* wished);
};

}  // namespace kifo
