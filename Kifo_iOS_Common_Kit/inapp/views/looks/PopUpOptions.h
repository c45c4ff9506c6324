#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include <QString>
#include <Qt>

#include "Kifo_iOS_Common_Kit/inapp/popup/ContrastPolicy.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class ImageLoader;

/// How long a popup's movements take. Reduced motion makes the first three zero.
struct PopUpDurations {
  std::chrono::milliseconds fade{220};                  ///< Cross-fade in and out.
  std::chrono::milliseconds freeText{200};              ///< The free-text block opens or closes.
  std::chrono::milliseconds scroll{350};                ///< The carousel moves by one page.
  std::chrono::milliseconds carouselInterval{2000};     ///< From one page to the next.
  std::chrono::milliseconds scrollIndicatorDelay{100};  ///< Before the indicator starts to flash.
  std::chrono::milliseconds scrollIndicatorInterval{1500};  ///< From one flash to the next.
};

/// The few words of a popup that no campaign supplies. Most are heard and not seen: they name
/// controls to screen readers. `popup` and `image` stand in for a missing title.
struct PopUpTexts {
  QString popup = QStringLiteral("Message");
  QString close = QStringLiteral("Close");
  QString submit = QStringLiteral("Submit");
  QString score = QStringLiteral("Score");
  QString freeText = QStringLiteral("Your answer");
  QString image = QStringLiteral("Image");
  QString option = QStringLiteral("Option %1 of %2");  ///< For an option without a text.
  QString page = QStringLiteral("Image %1 of %2");
  QString chooseFirst = QStringLiteral("Choose an answer first");
  QString copyCode = QStringLiteral("Copy code");
};

/// How a host wants its popups. The defaults suit most.
///
/// **Threading:** a plain value.
struct PopUpOptions {
  bool reducedMotion = false;  ///< Also where the settings of the user's desktop ask for it.
  ContrastPolicy contrast = ContrastPolicy::legible;
  PopUpDurations durations;
  double fontScale = 1.0;  ///< 1.0 to 2.0; values outside are clamped.
  /// Logical pixels that the layout takes for the screen's width; empty takes the window's.
  std::optional<double> screenWidth;
  /// Automatic: right to left when the campaign's own text is, otherwise as the host's window.
  Qt::LayoutDirection layoutDirection = Qt::LayoutDirectionAuto;
  PopUpTexts texts;
  /// Whether the panel keeps the free-text block's height of 100 where the block is closed or where
  /// the campaign has none, and so has the campaign's `totalHeight` exactly: a plain popup with a
  /// title, a description, two buttons and a submit button is 395 high; by default its pieces
  /// close up to 316.
  bool keepsFreeTextRoom = false;
  /// Fetches the pictures; null makes one that lives as long as the popup.
  std::shared_ptr<ImageLoader> imageLoader;
};

}  // namespace kifo
