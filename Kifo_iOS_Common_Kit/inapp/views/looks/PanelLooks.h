#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QPainter;

/// What a popup's panel and its still parts look like, whichever toolkit they belong to. Each fills
/// its `bounds`, in logical pixels.
///
/// **Threading:** UI thread only.
namespace kifo {

constexpr int kPanelCorner = 16;
constexpr int kSpinnerSteps = 8;
constexpr int kScrollIndicatorThickness = 4;

/// The rounded card that holds the campaign.
KIFO_SHARED void paintPanel(QPainter& painter, const PopupTheme& theme, const QRectF& bounds,
                            bool hasFocus);

/// A picture, fitted into its place with its aspect kept.
KIFO_SHARED void paintPicture(QPainter& painter, const QRectF& bounds, const QImage& image);
/// The quiet ground of a picture that is not there; with a sign when it will not come either.
KIFO_SHARED void paintNoPicture(QPainter& painter, const PopupTheme& theme, const QRectF& bounds,
                                bool isLoading);
/// A small wheel at one of its `kSpinnerSteps`.
KIFO_SHARED void paintSpinner(QPainter& painter, const QColor& color, const QRectF& bounds,
                              int step);

/// A row of dots, one for each page; when there are more than fit, a row that shows the way
/// instead.
KIFO_SHARED void paintPages(QPainter& painter, const PopupTheme& theme, const QRectF& bounds,
                            int pages, int current, bool isMirrored);

/// The ground and the dashed border of a coupon's code.
struct KIFO_SHARED CouponLook {
  QColor background = Qt::transparent;
  QColor stroke = Qt::black;
  double lineWidth = 4;

  static constexpr double dash = 6;
  static constexpr double gap = 4;

  /// From the edge to the code.
  [[nodiscard]] int margin() const;
  void paint(QPainter& painter, const QRectF& bounds) const;
};

/// The line into which an answer is typed, without its text.
KIFO_SHARED void paintField(QPainter& painter, const PopupTheme& theme, const QRectF& bounds,
                            bool isHovered, bool hasFocus);

/// How far a scrolled area has been scrolled.
struct ScrollState {
  double offset = 0;   ///< Logical pixels.
  double most = 0;     ///< The largest offset; 0 when everything fits.
  double visible = 0;  ///< Height of what is seen.
};

/// The edges beyond which there is more fade into `background`; `chevron` says so as well.
KIFO_SHARED void paintScrollShade(QPainter& painter, const QRectF& bounds, const ScrollState& state,
                                  const QColor& background, const QColor& ink, bool chevron);
/// A thin bar that shows how much there is and where one is; `strength`: 0 to 1.
KIFO_SHARED void paintScrollIndicator(QPainter& painter, const QRectF& bounds,
                                      const ScrollState& state, const QColor& color,
                                      double strength);

}  // namespace kifo
