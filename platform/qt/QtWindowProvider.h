#pragma once

#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QWidget;
class QWindow;

namespace kifo {

/// A screen that is a widget or is inside one. `QtScreen` makes any widget a screen.
///
/// **Threading:** UI thread only.
class KIFO_EXPORT QtWidgetProvider {
 public:
  virtual ~QtWidgetProvider() = default;

  /// The screen's widget; popups cover its window. Null once it is destroyed.
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

  /// The window that popups cover; null once it is destroyed.
  [[nodiscard]] virtual QWindow* window() const = 0;
};

}  // namespace kifo
