#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyleKit.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace kifo {
namespace {

// Every icon is drawn on a grid of 24 by 24 and scaled to where it is wanted.
constexpr double kGrid = 24;

QPen stroke(const QColor& color, double width) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void drawLines(QPainter& painter, const QColor& color, double width,
               std::initializer_list<QPointF> points) {
  painter.setPen(stroke(color, width));
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(std::data(points), static_cast<int>(points.size()));
}

void drawDot(QPainter& painter, const QColor& color, QPointF centre, double radius) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawEllipse(centre, radius, radius);
}

void fill(QPainter& painter, const QColor& color, const QPainterPath& path) {
  painter.setPen(Qt::NoPen);
  painter.fillPath(path, color);
}

void drawCheckmark(QPainter& painter, const QColor& color) {
  drawLines(painter, color, 3.2, {{3.5, 12.8}, {9.4, 18.6}, {20.5, 6.2}});
}

void drawCross(QPainter& painter, const QColor& color) {
  drawLines(painter, color, 3.2, {{5, 5}, {19, 19}});
  drawLines(painter, color, 3.2, {{19, 5}, {5, 19}});
}

void drawBell(QPainter& painter, const QColor& color) {
  QPainterPath bell({12, 2.4});
  bell.cubicTo({16.9, 2.4}, {18.6, 6.2}, {18.6, 10});
  bell.cubicTo({18.6, 14.6}, {20, 15.6}, {21.3, 17});
  bell.cubicTo({22, 17.8}, {21.6, 18.8}, {20.6, 18.8});
  bell.lineTo(3.4, 18.8);
  bell.cubicTo({2.4, 18.8}, {2, 17.8}, {2.7, 17});
  bell.cubicTo({4, 15.6}, {5.4, 14.6}, {5.4, 10});
  bell.cubicTo({5.4, 6.2}, {7.1, 2.4}, {12, 2.4});
  fill(painter, color, bell);
  drawDot(painter, color, {12, 2.4}, 1.5);
  QPainterPath clapper({8.9, 20.4});
  clapper.lineTo(15.1, 20.4);
  clapper.cubicTo({14.8, 24}, {9.2, 24}, {8.9, 20.4});
  fill(painter, color, clapper);
}

void drawExclamationMark(QPainter& painter, const QColor& color) {
  QPainterPath stem({9.9, 3.6});
  stem.cubicTo({9.9, 0.9}, {14.1, 0.9}, {14.1, 3.6});
  stem.lineTo(13.5, 14.2);
  stem.cubicTo({13.4, 16}, {10.6, 16}, {10.5, 14.2});
  stem.closeSubpath();
  fill(painter, color, stem);
  drawDot(painter, color, {12, 20.3}, 2.2);
}

void drawLetterI(QPainter& painter, const QColor& color) {
  drawDot(painter, color, {12, 3.9}, 2.3);
  drawLines(painter, color, 3.4, {{10, 10.2}, {12.2, 10.2}, {12.2, 20}});
  drawLines(painter, color, 3.4, {{9.4, 20}, {15, 20}});
}

void drawPencil(QPainter& painter, const QColor& color) {
  painter.save();
  painter.translate(12, 12);
  painter.rotate(45);
  QPainterPath pencil;
  pencil.addRoundedRect(QRectF(-2.9, -12.6, 5.8, 4.2), 1.2, 1.2);
  pencil.addRect(QRectF(-2.9, -7, 5.8, 13.2));
  QPainterPath tip({-2.9, 7.5});
  tip.lineTo(2.9, 7.5);
  tip.lineTo(0, 13.2);
  tip.closeSubpath();
  pencil.addPath(tip);
  fill(painter, color, pencil);
  painter.restore();
}

void drawHourglass(QPainter& painter, const QColor& color) {
  drawLines(painter, color, 2.6, {{5.4, 2.6}, {18.6, 2.6}});
  drawLines(painter, color, 2.6, {{5.4, 21.4}, {18.6, 21.4}});
  QPainterPath glass({7.2, 3.2});
  glass.cubicTo({7.2, 8.4}, {10.8, 9.8}, {10.8, 12});
  glass.cubicTo({10.8, 14.2}, {7.2, 15.6}, {7.2, 20.8});
  glass.lineTo(16.8, 20.8);
  glass.cubicTo({16.8, 15.6}, {13.2, 14.2}, {13.2, 12});
  glass.cubicTo({13.2, 9.8}, {16.8, 8.4}, {16.8, 3.2});
  glass.closeSubpath();
  painter.setBrush(Qt::NoBrush);
  painter.strokePath(glass, stroke(color, 2));
  QPainterPath sand({8.6, 19.9});
  sand.cubicTo({8.9, 17}, {15.1, 17}, {15.4, 19.9});
  sand.closeSubpath();
  fill(painter, color, sand);
}

void drawQuestionMark(QPainter& painter, const QColor& color) {
  QPainterPath hook({6.9, 7.6});
  hook.cubicTo({7.2, 4.4}, {9.2, 2.9}, {12, 2.9});
  hook.cubicTo({15, 2.9}, {17.1, 4.7}, {17.1, 7.5});
  hook.cubicTo({17.1, 11}, {12, 11.4}, {12, 15});
  painter.setBrush(Qt::NoBrush);
  painter.strokePath(hook, stroke(color, 3.2));
  drawDot(painter, color, {12, 20.6}, 2.2);
}

void drawIcon(QPainter& painter, KifoPopupStyle style, const QColor& color) {
  switch (style) {
    case KifoPopupStyle::success:
      return drawCheckmark(painter, color);
    case KifoPopupStyle::error:
      return drawCross(painter, color);
    case KifoPopupStyle::notice:
      return drawBell(painter, color);
    case KifoPopupStyle::warning:
      return drawExclamationMark(painter, color);
    case KifoPopupStyle::info:
      return drawLetterI(painter, color);
    case KifoPopupStyle::edit:
      return drawPencil(painter, color);
    case KifoPopupStyle::wait:
      return drawHourglass(painter, color);
    case KifoPopupStyle::question:
      return drawQuestionMark(painter, color);
  }
}

// Lets `draw` work on the grid, placed in the middle of `rect`.
template <class Draw>
void onGrid(QPainter& painter, const QRectF& rect, const Draw& draw) {
  const double side = std::min(rect.width(), rect.height());
  if (!(side > 0)) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(rect.center() - QPointF(side / 2, side / 2));
  painter.scale(side / kGrid, side / kGrid);
  draw();
  painter.restore();
}

}  // namespace

void KifoPopupStyleKit::draw(QPainter& painter, const QRectF& rect, KifoPopupStyle style,
                             const QColor& color) {
  onGrid(painter, rect, [&] { drawIcon(painter, style, color); });
}

QPixmap KifoPopupStyleKit::image(KifoPopupStyle style, double side, const QColor& color,
                                 double devicePixelRatio) {
  const int pixels = std::max(1, static_cast<int>(std::ceil(side * devicePixelRatio)));
  QPixmap picture(pixels, pixels);
  picture.setDevicePixelRatio(devicePixelRatio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  draw(painter, QRectF(0, 0, side, side), style, color);
  return picture;
}

}  // namespace kifo
