#pragma once

#include <QColor>
#include <QFont>
#include <QStringList>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupPalette.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"

class QPalette;

namespace kifo {

/// What all elements of one popup share: the host's options, the palette, and the fonts.
///
/// **Threading:** a plain value; fonts are made on the UI thread.
struct KIFO_SHARED PopupTheme {
  PopUpOptions options;
  QStringList families;
  PopupPalette palette;
  // The palette's colours as Qt has them.
  QColor panelFill;
  QColor panel;
  QColor ink;
  QColor accent;

  /// The theme of a campaign shown over a window with the colours `window`.
  static PopupTheme of(const PopupPreferences& preferences, const PopUpOptions& options,
                       const QPalette& window);
  /// A theme in the host's own colours, for what lies in a panel of the host's.
  static PopupTheme ofHost(const QPalette& colors, const PopUpOptions& options);

  [[nodiscard]] QFont font(TextRole role) const;
  /// `wanted` as text of this role may be painted on `behind`.
  [[nodiscard]] QColor text(TextRole role, const QColor& wanted, const QColor& behind) const;
  [[nodiscard]] QColor text(TextRole role, const QColor& wanted) const {
    return text(role, wanted, panel);
  }
  /// The panel with some ink in it, 0 to 1: hover, borders, placeholders.
  [[nodiscard]] QColor shade(double amount) const;
  /// What marks something on `surface`: the accent where it stands out, ink otherwise.
  [[nodiscard]] QColor accentOn(const QColor& surface) const;
  /// A duration as it counts for this popup: zero with reduced motion.
  [[nodiscard]] int milliseconds(std::chrono::milliseconds duration) const;

 private:
  void takeColors();
};

}  // namespace kifo
