#pragma once

#include <QColor>
#include <QFont>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAlertButtonLayout.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/Margin.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The indicator that turns in the circle of a wait: `white` and `whiteLarge` take the icon's
/// colour, `gray` is grey.
enum class ActivityIndicatorStyle { whiteLarge = 0, white = 1, gray = 2 };

/// Everything that decides how a `KifoPopup` looks and, in part, behaves.
///
///     kifo::KifoAppearance appearance;
///     appearance.buttonsLayout = kifo::KifoAlertButtonLayout::horizontal;
///     auto alert = std::make_shared<kifo::KifoPopup>(appearance);
///
/// Lengths are logical pixels. Colours that would leave text unreadable on what lies behind it give
/// way to black or white.
///
/// **Threading:** a plain value; made on the UI thread, once the application exists.
struct KIFO_EXPORT KifoAppearance {
  double kDefaultShadowOpacity = 0.7;  ///< Of the black that dims the window, 0 to 1.
  double kCircleTopPosition = 0;  ///< How far below the card's upper edge the circle's centre lies.
  /// How far the disc behind the circle reaches beyond it.
  double kCircleBackgroundTopPosition = 6;
  double kCircleHeight = 56;      ///< The circle's diameter.
  double kCircleIconHeight = 20;  ///< The side of the icon inside it.
  double kTitleHeight = 25;       ///< The least height of the title.
  /// How small a long title may shrink before it wraps, 0 to 1.
  double kTitleMinimumScaleFactor = 1.0;
  double kWindowWidth = 240;   ///< The card's least width, if the window has it.
  double kWindowHeight = 178;  ///< The least height of the card.
  double kTextHeight = 90;     ///< A text higher than this makes the card wider, up to 400.
  double kTextFieldHeight = 30;
  double kTextViewdHeight = 80;  ///< The spelling is kept for compatibility.
  double kButtonHeight = 35;     ///< The least height of a button; one with a long title grows.
  QColor circleBackgroundColor = Qt::white;                ///< The disc behind the circle.
  QColor contentViewColor = QColor::fromRgbF(1, 1, 1, 1);  ///< The card.
  QColor contentViewBorderColor = QColor::fromRgbF(0.8F, 0.8F, 0.8F, 1);
  QColor titleColor = QColor::fromRgbF(77 / 255.F, 77 / 255.F, 77 / 255.F, 1);
  QColor subTitleColor = QColor::fromRgbF(77 / 255.F, 77 / 255.F, 77 / 255.F, 1);
  Margin margin{};
  QFont kTitleFont = systemFont(20);
  QFont kTextFont = systemFont(14);
  QFont kButtonFont = systemFont(14, QFont::Bold);
  /// Taps beside the controls then do nothing: no keyboard put away, no closing.
  bool disableTapGesture = false;
  /// Whether the alert offers a way to close it besides the host's buttons.
  bool showCloseButton = true;
  bool showCircularIcon = true;   ///< Whether there is a circle at all.
  bool shouldAutoDismiss = true;  ///< Whether the press of a button closes the alert.
  double contentViewCornerRadius = 5;
  double fieldCornerRadius = 3;
  double buttonCornerRadius = 3;
  bool dynamicAnimatorActive = false;  ///< The card comes on a spring and snaps into its place.
  KifoAlertButtonLayout buttonsLayout = KifoAlertButtonLayout::vertical;
  /// Of the text; left and right are leading and trailing.
  Qt::Alignment textViewAlignment = Qt::AlignHCenter;
  bool hideWhenBackgroundViewIsTapped = false;
  ActivityIndicatorStyle activityIndicatorStyle = ActivityIndicatorStyle::white;

  /// An appearance that goes with the campaigns' popups: as round, with buttons as large.
  static KifoAppearance likePopups();

  /// The application's font in `pixels` logical pixels.
  static QFont systemFont(int pixels, QFont::Weight weight = QFont::Normal);
};

}  // namespace kifo
