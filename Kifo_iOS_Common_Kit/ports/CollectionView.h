#pragma once

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A row of pages that can be scrolled to one of them.
///
/// **Threading:** UI thread only.
class KIFO_EXPORT CollectionView {
 public:
  enum class ScrollPosition { left, centeredHorizontally, right };

  virtual ~CollectionView() = default;

  [[nodiscard]] virtual double width() const = 0;  ///< Logical pixels.
  virtual void setPagingEnabled(bool enabled) = 0;
  virtual void scrollToItem(int row, int section, ScrollPosition position, bool animated) = 0;
};

}  // namespace kifo
