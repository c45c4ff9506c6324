#pragma once

#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QWidget;
class QWindow;

namespace kifo {

/// A screen that is, or lies in, a widget. `QtScreen` makes any widget one.
///
/// **Threading:** UI thread only.
class KIFO_EXPORT QtWidgetProvider {
 public:
  virtual ~QtWidgetProvider() = default;

  /// The screen's widget, popups lie over its window; null once it is gone.
  [[nodiscard]] virtual QWidget* widget() const = 0;
};

/// A screen that is drawn into a window of its own, such as a Qt Quick view:
///
///     class MapScreen : public kifo::ViewController, public kifo::QtWindowProvider { … };
///
/// **Threading:** UI thread only.
class KIFO_EXPORT QtWindowProvider {
 public:
  virtual ~QtWindowProvider() = default;

  /// The window that popups lie over; null once it is gone.
  [[nodiscard]] virtual QWindow* window() const = 0;
};

}  // namespace kifo
