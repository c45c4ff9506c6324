#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"
#include "Kifo_iOS_Common_Kit/ports/CollectionView.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

struct IndexPath {
  int row = 0;
  int section = 0;
};

/// Logical pixels.
struct Size {
  double width = 0.0;
  double height = 0.0;

  friend bool operator==(const Size&, const Size&) = default;
};

/// What a view needs that shows a push's images as a carousel:
///
///     index = kifo::KifoSliderPushHelper::scrollNextItem(&view, index, images.size());
///
/// **Threading:** `getImageList` on any thread, the rest on the UI thread.
/// **Errors:** a null view is a mistake of the caller that ends the process.
class KIFO_EXPORT KifoSliderPushHelper {
 public:
  static constexpr std::string_view LOG_TAG =
      "Kifo KifoSliderPushHelper:";  ///< Starts its console lines.

  /// The addresses of the push's images, in order; empty when it carries none.
  static std::vector<std::string> getImageList(const Notification& notification);

  /// A page is as wide as the view and 20 less high. The path and the count do not matter.
  static Size getSize(const CollectionView* collectionView, IndexPath sizeForItemAt, int listCount);

  /// Scrolls to the image after or before `currentIndex`, round the ends, and returns its index.
  static int scrollNextItem(CollectionView* collectionView, int currentIndex, int listCount);
  static int scrollPreviousItem(CollectionView* collectionView, int currentIndex, int listCount);
};

}  // namespace kifo
