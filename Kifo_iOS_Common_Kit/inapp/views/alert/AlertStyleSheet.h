#pragma once

#include <QString>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertColors.h"

namespace kifo {

/// The style sheet of an alert's card: how its fields look. It also shields the
/// card's own widgets from a style sheet of the host's that styles every widget, and names them one
/// by one so that it leaves the host's custom view alone.
///
/// **Threading:** thread-safe, no state.
class AlertStyleSheet {
 public:
  static constexpr const char* kContentName = "kifoPopupContent";
  static constexpr const char* kViewportName = "kifoPopupViewport";
  static constexpr const char* kFieldName = "kifoPopupField";
  static constexpr const char* kScrollName = "kifoPopupScroll";

  static QString forCard(const KifoAppearance& appearance, const AlertColors& colors);
};

}  // namespace kifo
