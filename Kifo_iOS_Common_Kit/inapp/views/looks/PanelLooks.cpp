#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"

#include <algorithm>
#include <cmath>

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"

namespace kifo {
namespace {

constexpr double kPictureCorner = 8;
constexpr double kGlyph = 40;  ///< Width of the picture sign on the placeholder.
constexpr double kDot = 6;
constexpr double kPitch = 14;  ///< From one dot's middle to the next one's.
constexpr int kCodeInset = 4;  ///< From a coupon's border to the code.
constexpr double kFieldCorner = 8;
constexpr double kDepth = 32;     ///< Of a shade at most; less where little is left to scroll.
constexpr double kChevron = 12;   ///< Its width.
constexpr double kFoot = 5;       ///< From the chevron's tip to the edge.
constexpr double kShortest = 24;  ///< Logical pixels of bar, however long the content.

void paintDots(QPainter& painter, const PopupTheme& theme, const QRectF& bounds, int pages,
               int current, bool isMirrored) {
  const double used = (pages - 1) * kPitch;
  for (int page = 0; page < pages; ++page) {
    const int place = isMirrored ? pages - 1 - page : page;
    const QPointF middle(bounds.width() / 2.0 - used / 2 + place * kPitch, bounds.height() / 2.0);
    painter.setBrush(page == current ? theme.accent : theme.shade(0.28));
    const double radius = page == current ? kDot / 2 + 1 : kDot / 2;
    painter.drawEllipse(middle, radius, radius);
  }
}

void paintWay(QPainter& painter, const PopupTheme& theme, const QRectF& bounds, int pages,
              int current, bool isMirrored) {
  const QRectF way(8, bounds.height() / 2.0 - 2, bounds.width() - 16.0, 4);
  painter.setBrush(theme.shade(0.18));
  painter.drawRoundedRect(way, 2, 2);
  const double piece = std::max(way.width() / pages, 16.0);
  double along = (way.width() - piece) * current / (pages - 1);
  if (isMirrored) along = way.width() - piece - along;
  painter.setBrush(theme.accent);
  painter.drawRoundedRect(QRectF(way.x() + along, way.y(), piece, 4), 2, 2);
}

void paintChevron(QPainter& painter, const QRectF& bounds, const QColor& ink) {
  const QPointF tip(bounds.width() / 2.0, bounds.height() - kFoot);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF({tip + QPointF(-kChevron / 2, -kChevron / 2), tip,
                                  tip + QPointF(kChevron / 2, -kChevron / 2)}));
}

}  // namespace

void paintPanel(QPainter& painter, const PopupTheme& theme, const QRectF& bounds, bool hasFocus) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(theme.panelFill);
  QColor edge = theme.ink;
  edge.setAlphaF(0.08f);
  painter.setPen(QPen(edge, 1));
  painter.drawRoundedRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5), kPanelCorner, kPanelCorner);
  if (hasFocus) paintFocusRing(painter, bounds, kPanelCorner, theme.panel, theme.accent);
}

void paintPicture(QPainter& painter, const QRectF& bounds, const QImage& image) {
  const QSizeF fitted = QSizeF(image.size()).scaled(bounds.size(), Qt::KeepAspectRatio);
  const QRectF target((bounds.width() - fitted.width()) / 2,
                      (bounds.height() - fitted.height()) / 2, fitted.width(), fitted.height());
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath corners;
  if (target.width() < bounds.width()) {
    corners.addRoundedRect(target, kPictureCorner, kPictureCorner);
  }
  if (!corners.isEmpty()) painter.setClipPath(corners);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(target, image);
}

/// The sign is a frame with hills and a sun: a picture belongs here.
void paintNoPicture(QPainter& painter, const PopupTheme& theme, const QRectF& bounds,
                    bool isLoading) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme.shade(0.06));
  painter.drawRoundedRect(bounds.adjusted(8, 0, -8, 0), kPictureCorner, kPictureCorner);
  if (isLoading || bounds.height() < 2 * kGlyph) return;
  painter.setPen(QPen(theme.shade(0.28), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.translate(bounds.center());
  painter.drawRoundedRect(QRectF(-20, -15, kGlyph, 30), 4, 4);
  painter.drawEllipse(QPointF(-9, -5), 3.5, 3.5);
  painter.drawPolyline(QPolygonF({{-16, 11}, {-6, 2}, {0, 7}, {8, -3}, {16, 6}}));
}

void paintSpinner(QPainter& painter, const QColor& color, const QRectF& bounds, int step) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(bounds.center());
  for (int spoke = 0; spoke < kSpinnerSteps; ++spoke) {
    const int age = (step - spoke + kSpinnerSteps) % kSpinnerSteps;
    QColor faded = color;
    faded.setAlphaF(static_cast<float>(0.75 - 0.6 * age / kSpinnerSteps));
    painter.setPen(QPen(faded, 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.save();
    painter.rotate(360.0 / kSpinnerSteps * spoke);
    painter.drawLine(QPointF(0, -5), QPointF(0, -8));
    painter.restore();
  }
}

void paintPages(QPainter& painter, const PopupTheme& theme, const QRectF& bounds, int pages,
                int current, bool isMirrored) {
  if (pages < 2) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const auto paint = pages * kPitch <= bounds.width() ? paintDots : paintWay;
  paint(painter, theme, bounds, pages, current, isMirrored);
}

int CouponLook::margin() const {
  return static_cast<int>(std::ceil(lineWidth)) + kCodeInset;
}

void CouponLook::paint(QPainter& painter, const QRectF& bounds) const {
  painter.fillRect(bounds, background);
  QPen pen(stroke, lineWidth);
  pen.setJoinStyle(Qt::BevelJoin);
  pen.setCapStyle(Qt::FlatCap);
  pen.setDashPattern({dash / lineWidth, gap / lineWidth});  // in widths of the pen
  // Inside the bounds: half of a stroke along them would be clipped.
  const double half = lineWidth / 2;
  QPainterPath inside;
  inside.addRect(bounds.adjusted(half, half, -half, -half));
  painter.strokePath(inside, pen);
}

void paintField(QPainter& painter, const PopupTheme& theme, const QRectF& bounds, bool isHovered,
                bool hasFocus) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(theme.shade(0.05));
  painter.setPen(QPen(theme.shade(isHovered ? 0.55 : 0.4), 1));
  painter.drawRoundedRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5), kFieldCorner, kFieldCorner);
  if (hasFocus) paintFocusRing(painter, bounds, kFieldCorner, theme.shade(0.05), theme.accent);
}

void paintScrollShade(QPainter& painter, const QRectF& bounds, const ScrollState& state,
                      const QColor& background, const QColor& ink, bool chevron) {
  painter.setClipRect(bounds.adjusted(1, 0, -1, 0));  // a panel's edge stays seen
  QColor clear = background;
  clear.setAlpha(0);
  const auto shade = [&](double edge, double depth, int way) {
    QLinearGradient gradient(0, edge, 0, edge + way * depth);
    gradient.setColorAt(0, background);
    gradient.setColorAt(0.25, background);
    gradient.setColorAt(1, clear);
    painter.fillRect(QRectF(0, way > 0 ? edge : edge - depth, bounds.width(), depth), gradient);
  };
  const double above = std::min(state.offset, kDepth);
  const double below = std::min(state.most - state.offset, kDepth);
  if (above > 0) shade(0, above, 1);
  if (below <= 0) return;
  shade(bounds.height(), below, -1);
  if (chevron) paintChevron(painter, bounds, ink);
}

void paintScrollIndicator(QPainter& painter, const QRectF& bounds, const ScrollState& state,
                          const QColor& color, double strength) {
  if (strength <= 0 || state.most <= 0) return;
  const double length = std::max(bounds.height() * state.visible / (state.most + state.visible),
                                 std::min(kShortest, bounds.height()));
  const double along = state.offset / state.most;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(0.45 * strength);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  const double corner = kScrollIndicatorThickness / 2.0;
  painter.drawRoundedRect(QRectF(0, along * (bounds.height() - length), bounds.width(), length),
                          corner, corner);
}

}  // namespace kifo
