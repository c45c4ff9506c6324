// The products: each is drawn in a square of 100 by 100 units.
#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>
#include <numbers>

#include "apps/demo/shop/Illustrations.h"
#include "apps/demo/shop/Theme.h"

namespace kifo::shop {
namespace {

const QColor kOak(0xB9, 0x83, 0x4F);
const QColor kDarkOak(0x8C, 0x5E, 0x35);
const QColor kClay(0xC8, 0x6B, 0x47);
const QColor kLeaf(0x3C, 0x7A, 0x5B);
const QColor kDarkLeaf(0x2A, 0x5C, 0x45);
const QColor kWool(0x4E, 0x7C, 0x8C);

QLinearGradient across(double from, double to, const QColor& left, const QColor& right) {
  QLinearGradient gradient(from, 0, to, 0);
  gradient.setColorAt(0, left);
  gradient.setColorAt(1, right);
  return gradient;
}

QPainterPath quadrilateral(QPointF a, QPointF b, QPointF c, QPointF d) {
  QPainterPath path(a);
  path.lineTo(b);
  path.lineTo(c);
  path.lineTo(d);
  path.closeSubpath();
  return path;
}

void paintFloorShadow(QPainter& painter, QPointF centre, double width) {
  QRadialGradient gradient(centre, width);
  gradient.setColorAt(0, QColor(60, 40, 20, 70));
  gradient.setColorAt(1, QColor(60, 40, 20, 0));
  painter.setBrush(gradient);
  painter.drawEllipse(centre, width, width * 0.16);
}

void paintLamp(QPainter& painter) {
  QRadialGradient glow(QPointF(50, 42), 48);
  glow.setColorAt(0, QColor(255, 226, 150, 190));
  glow.setColorAt(1, QColor(255, 226, 150, 0));
  painter.setBrush(glow);
  painter.drawEllipse(QPointF(50, 42), 48, 44);
  paintFloorShadow(painter, {50, 88}, 26);
  painter.setBrush(across(46, 54, kOak, kDarkOak));
  painter.drawRoundedRect(QRectF(47.5, 48, 5, 34), 2, 2);
  painter.drawRoundedRect(QRectF(34, 80, 32, 8), 4, 4);
  painter.setBrush(across(24, 76, QColor(0xFF, 0xF3, 0xD9), QColor(0xEF, 0xC9, 0x8C)));
  painter.drawPath(quadrilateral({36, 16}, {64, 16}, {76, 50}, {24, 50}));
  painter.setPen(QPen(QColor(190, 140, 80, 60), 0.7));
  for (int fold = 1; fold < 9; ++fold) {
    painter.drawLine(QPointF(36 + 28 * fold / 9.0, 16), QPointF(24 + 52 * fold / 9.0, 50));
  }
}

/// One leaf that grows from `root` for `length`, turned by `degrees` from upright.
void paintLeaf(QPainter& painter, QPointF root, double length, double degrees,
               const QColor& color) {
  painter.save();
  painter.translate(root);
  painter.rotate(degrees);
  QPainterPath leaf;
  leaf.cubicTo(-length * 0.42, -length * 0.35, -length * 0.3, -length * 0.9, 0, -length);
  leaf.cubicTo(length * 0.3, -length * 0.9, length * 0.42, -length * 0.35, 0, 0);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawPath(leaf);
  painter.setPen(QPen(color.lighter(135), 0.9, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(0, -1), QPointF(0, -length * 0.92));
  for (const double at : {0.35, 0.52, 0.68}) {
    painter.drawLine(QPointF(0, -length * at), QPointF(-length * 0.17, -length * (at + 0.13)));
    painter.drawLine(QPointF(0, -length * at), QPointF(length * 0.17, -length * (at + 0.13)));
  }
  painter.restore();
}

void paintPlant(QPainter& painter) {
  paintFloorShadow(painter, {50, 90}, 26);
  for (const auto& [degrees, length] : {std::pair{-62.0, 40.0}, {60.0, 42.0}, {-34.0, 52.0}}) {
    paintLeaf(painter, {50, 66}, length, degrees, kDarkLeaf);
  }
  for (const auto& [degrees, length] :
       {std::pair{30.0, 52.0}, {-8.0, 58.0}, {-78.0, 26.0}, {80.0, 28.0}}) {
    paintLeaf(painter, {50, 67}, length, degrees, kLeaf);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(across(32, 68, kClay.lighter(112), kClay.darker(112)));
  painter.drawPath(quadrilateral({34, 68}, {66, 68}, {61, 90}, {39, 90}));
  painter.setBrush(across(30, 70, kClay.lighter(124), kClay));
  painter.drawRoundedRect(QRectF(31, 62, 38, 9), 3, 3);
}

void paintMug(QPainter& painter) {
  paintFloorShadow(painter, {48, 84}, 30);
  const QColor glaze(0xFB, 0xF3, 0xE8);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(glaze.darker(118), 6.5));
  painter.drawEllipse(QRectF(61, 46, 22, 24));
  painter.setPen(Qt::NoPen);
  QPainterPath body;
  body.addRoundedRect(QRectF(24, 36, 46, 48), 9, 9);
  painter.setBrush(across(24, 70, glaze, glaze.darker(116)));
  painter.drawPath(body);
  painter.save();
  painter.setClipPath(body);
  painter.setBrush(theme::kGreen);
  painter.drawRect(QRectF(24, 66, 46, 20));
  painter.setBrush(theme::kAccent);
  painter.drawRect(QRectF(24, 63, 46, 3));
  painter.restore();
  painter.setBrush(QColor(0x5A, 0x37, 0x22));
  painter.drawEllipse(QRectF(27, 33, 40, 9));
  painter.setBrush(Qt::NoBrush);
  for (const double x : {38.0, 47.0, 56.0}) {
    QPainterPath steam(QPointF(x, 28));
    steam.cubicTo(x - 5, 23, x + 5, 18, x, 12);
    painter.setPen(QPen(QColor(255, 255, 255, 210), 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(steam);
  }
}

void paintArmchair(QPainter& painter) {
  paintFloorShadow(painter, {50, 88}, 40);
  painter.setBrush(kDarkOak);
  painter.drawPath(quadrilateral({24, 76}, {30, 76}, {27, 90}, {23, 90}));
  painter.drawPath(quadrilateral({70, 76}, {76, 76}, {77, 90}, {73, 90}));
  painter.setBrush(across(20, 80, kWool.darker(104), kWool.darker(128)));
  painter.drawRoundedRect(QRectF(23, 18, 54, 54), 18, 18);
  painter.setBrush(kWool.lighter(118));
  painter.drawRoundedRect(QRectF(30, 25, 40, 36), 12, 12);
  painter.setBrush(across(14, 86, kWool, kWool.darker(118)));
  painter.drawRoundedRect(QRectF(26, 60, 48, 20), 7, 7);
  painter.drawRoundedRect(QRectF(14, 44, 16, 36), 8, 8);
  painter.drawRoundedRect(QRectF(70, 44, 16, 36), 8, 8);
  painter.setBrush(theme::kAccent.lighter(118));
  painter.save();
  painter.translate(52, 54);
  painter.rotate(-9);
  painter.drawRoundedRect(QRectF(-13, -11, 26, 21), 5, 5);
  painter.restore();
}

void paintClock(QPainter& painter) {
  const QPointF centre(50, 50);
  painter.setBrush(QColor(80, 50, 30, 40));
  painter.drawEllipse(centre + QPointF(2, 4), 37, 37);
  painter.setBrush(across(14, 86, kOak.lighter(112), kDarkOak));
  painter.drawEllipse(centre, 37, 37);
  painter.setBrush(QColor(0xFF, 0xFC, 0xF6));
  painter.drawEllipse(centre, 31, 31);
  const auto hand = [&](double degrees, double from, double to, const QPen& pen) {
    const double radians = degrees * std::numbers::pi / 180;
    const QPointF direction(std::sin(radians), -std::cos(radians));
    painter.setPen(pen);
    painter.drawLine(centre + direction * from, centre + direction * to);
  };
  for (int hour = 0; hour < 12; ++hour) {
    hand(hour * 30, hour % 3 == 0 ? 23 : 26, 28,
         QPen(theme::kMuted, hour % 3 == 0 ? 1.8 : 1, Qt::SolidLine, Qt::RoundCap));
  }
  hand(305, -4, 17, QPen(theme::kInk, 3.2, Qt::SolidLine, Qt::RoundCap));
  hand(50, -5, 24, QPen(theme::kAccent, 1.8, Qt::SolidLine, Qt::RoundCap));
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::kInk);
  painter.drawEllipse(centre, 2.6, 2.6);
}

void paintBook(QPainter& painter, const QRectF& book, const QColor& cover) {
  painter.setBrush(cover);
  painter.drawRoundedRect(book, 2.5, 2.5);
  painter.setBrush(QColor(0xFB, 0xF6, 0xEC));
  painter.drawRect(QRectF(book.right() - 7, book.top() + 2.5, 6, book.height() - 5));
  painter.setBrush(QColor(255, 255, 255, 110));
  painter.drawRoundedRect(
      QRectF(book.left() + 9, book.center().y() - 1.2, book.width() * 0.42, 2.4), 1, 1);
}

void paintBooks(QPainter& painter) {
  paintFloorShadow(painter, {50, 85}, 38);
  paintBook(painter, {16, 67, 68, 17}, theme::kNight);
  paintBook(painter, {21, 51, 61, 16}, theme::kAccent);
  paintBook(painter, {18, 37, 58, 14}, theme::kGreen);
  painter.setBrush(QColor(0xF2, 0xE2, 0xC4));
  painter.drawRect(QRectF(60, 37, 5, 47));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0xE6, 0xCF, 0xA4), 3));
  painter.drawEllipse(QRectF(49, 26, 13, 11));
  painter.drawEllipse(QRectF(63, 26, 13, 11));
}

}  // namespace

void paintMotif(QPainter& painter, const QRectF& area, Motif motif) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(area.topLeft());
  painter.scale(area.width() / 100, area.height() / 100);
  painter.setPen(Qt::NoPen);
  switch (motif) {
    case Motif::lamp:
      paintLamp(painter);
      break;
    case Motif::plant:
      paintPlant(painter);
      break;
    case Motif::mug:
      paintMug(painter);
      break;
    case Motif::armchair:
      paintArmchair(painter);
      break;
    case Motif::clock:
      paintClock(painter);
      break;
    case Motif::books:
      paintBooks(painter);
      break;
  }
  painter.restore();
}

}  // namespace kifo::shop
