#pragma once

#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QQuickItem;

namespace kifo {

/// A screen that is an item of a Qt Quick scene. Popups are shown in the item's window.
///
/// **Threading:** UI thread only.
class KIFO_EXPORT QuickScreenProvider {
 public:
  virtual ~QuickScreenProvider() = default;

  /// Null once it is destroyed.
  [[nodiscard]] virtual QQuickItem* item() const = 0;
};

}  // namespace kifo
