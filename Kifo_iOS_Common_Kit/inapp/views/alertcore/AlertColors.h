#pragma once

#include <QColor>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAppearance.h"

namespace kifo {

/// The colours of an alert's card, made legible where the appearance's own would not be.
///
/// **Threading:** a plain value.
struct KIFO_SHARED AlertColors {
  QColor card;
  QColor border;
  QColor title;
  QColor text;
  QColor accent;  ///< Marks the field that has the focus.
  QColor line;    ///< Between the rows of the list.
  QColor field;
  QColor fieldBorder;
  QColor selectedText;  ///< On `accent`.

  /// `color`: the alert's own.
  static AlertColors of(const KifoAppearance& appearance, const QColor& color);
};

/// How `button` looks on the card of an alert of the colour `color`. `text`: that of the titles.
/// `standsBack`: it is the close button behind others.
KIFO_SHARED AlertButtonLook lookOf(const AlertButton& button, bool standsBack,
                                   const KifoAppearance& appearance, const QColor& color,
                                   const QColor& text);

}  // namespace kifo
