#pragma once

#include <QColor>
#include <QFont>
#include <QStringList>

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopUpOptions.h"

class QWidget;

namespace kifo {

/// The roles that text plays in a popup; each has its size and weight.
enum class TextRole {
  title,
  description,
  question,
  option,
  button,
  label,
  field,
  score,
  bound,
  counter,
  coupon
};

/// What all elements of one popup share: the host's wishes, the panel's colour, and what follows
/// from the two.
///
/// **Threading:** a plain value; fonts are made on the UI thread.
struct PopupTheme {
  PopUpOptions options;
  QStringList families;
  QColor panelFill;  ///< As the campaign gives it, its transparency included.
  QColor panel;      ///< As it is seen; opaque.
  QColor ink;        ///< Neutral text and glyphs on the panel.
  QColor accent;     ///< Marks what is chosen or focused; stands out from the panel.

  /// The theme of a campaign shown over `host`.
  static PopupTheme of(const PopupPreferences& preferences, const PopUpOptions& options,
                       const QWidget* host);

  [[nodiscard]] QFont font(TextRole role) const;
  /// `wanted` as it may be painted on `behind`.
  [[nodiscard]] QColor text(const QColor& wanted, const QColor& behind) const;
  [[nodiscard]] QColor text(const QColor& wanted) const { return text(wanted, panel); }
  /// The panel with some ink in it: hover, borders, placeholders.
  [[nodiscard]] QColor shade(double amount) const;
  /// A duration as it counts for this popup: zero with reduced motion.
  [[nodiscard]] int milliseconds(std::chrono::milliseconds duration) const;
};

}  // namespace kifo
