#pragma once

#include <QWidget>

namespace kifo {

/// Lets assistive technology know an alert's overlay as an alert, and announces one that has
/// opened. The overlay's accessible name and description are what is read out.
///
/// **Threading:** UI thread only.
class KifoPopupAccessible {
 public:
  static void announce(QWidget* overlay);
};

}  // namespace kifo
