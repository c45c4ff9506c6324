#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QColor>
#include <QFont>
#include <QString>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/WrappedText.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A text and how it is set.
struct KIFO_SHARED TextLook {
  QString text;
  QFont font;
  QColor color;
  WrappedText::Alignment alignment = WrappedText::Alignment::center;
  WrappedText::Vertical vertical = WrappedText::Vertical::middle;
  bool isDigits = false;  ///< Needs no space for accents and descenders.

  /// The height that it needs as `wrapped` at a width.
  [[nodiscard]] int heightFor(const WrappedText& wrapped, int width) const;
};

/// A button or an option: what is seen on it, what a screen reader says, and its colours.
struct OptionText {
  QString caption;
  QString name;
  std::optional<QColor> surface;
  std::optional<QColor> text;
};

/// Everything of one popup that is read, seen as text or heard, for every toolkit alike.
///
/// **Threading:** a plain value; made on the UI thread.
struct KIFO_SHARED PopupContent {
  QString name;  ///< Of the dialog.
  QString details;
  QString groupName;  ///< Of the list and of the emojis.
  QString sliderName;
  QString fieldName;

  TextLook title;
  TextLook description;
  TextLook question;
  TextLook coupon;
  TextLook score;
  TextLook minimum;
  TextLook maximum;
  TextLook fieldLabel;
  CouponLook couponLook;
  OptionText copy;
  OptionText submit;
  std::vector<OptionText> options;  ///< The rows of the list, or the emojis.

  static PopupContent of(const PopupState& state, const PopupTheme& theme);
  /// The counter below the free-text field that holds `text`.
  static TextLook counter(const PopupTheme& theme, const std::string& text);
  /// The text of a survey's row.
  static TextLook optionText(const PopupTheme& theme, const OptionLook& look,
                             const OptionText& option);
  /// The copy button once the coupon's code has been copied.
  static OptionText copied(const Coupon& coupon);
  /// The score while its thumb is held: a little larger.
  static QFont heldScore(const PopupTheme& theme);
};

/// Right to left as soon as the campaign's own words are; otherwise as the host's window.
KIFO_SHARED Qt::LayoutDirection directionOf(const PopupPreferences& preferences,
                                            const PopUpOptions& options,
                                            Qt::LayoutDirection window);

}  // namespace kifo
