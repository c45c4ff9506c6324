#pragma once

#include <QString>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertColors.h"

namespace kifo {

/// The style sheet of an alert's card: how its fields look. It also keeps a host's style sheet for
/// all widgets from the card's own ones. It names these one by one: the host's custom view stays as
/// it is.
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
