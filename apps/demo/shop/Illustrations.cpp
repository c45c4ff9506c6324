// Rooms, faces and the making of image files.
#include "apps/demo/shop/Illustrations.h"

#include <QBuffer>
#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>

#include "apps/demo/shop/Theme.h"

namespace kifo::shop {
namespace {

struct RoomColors {
  QColor wall;
  QColor floor;
  QColor sky;
  QColor sun;
};

RoomColors colorsOf(Daytime daytime) {
  switch (daytime) {
    case Daytime::morning:
      return {QColor(0xF3, 0xDD, 0xCF), QColor(0xD2, 0xA9, 0x7F), QColor(0xFB, 0xEC, 0xC9),
              QColor(0xF7, 0xB9, 0x6B)};
    case Daytime::noon:
      return {QColor(0xDD, 0xE8, 0xDF), QColor(0xC9, 0xA5, 0x7A), QColor(0xC8, 0xE4, 0xF0),
              QColor(0xFF, 0xF4, 0xC4)};
    case Daytime::evening:
      return {QColor(0x4A, 0x53, 0x72), QColor(0x6E, 0x54, 0x4B), QColor(0x25, 0x2D, 0x4B),
              QColor(0xF5, 0xEC, 0xCB)};
  }
  return {};
}

void paintWindow(QPainter& painter, const QRectF& frame, const RoomColors& colors) {
  painter.setBrush(QColor(255, 255, 255, 230));
  painter.drawRoundedRect(frame, frame.width() * 0.05, frame.width() * 0.05);
  const double edge = frame.width() * 0.05;
  const QRectF pane = frame.adjusted(edge, edge, -edge, -edge);
  painter.save();
  painter.setClipRect(pane);
  QLinearGradient sky(pane.topLeft(), pane.bottomLeft());
  sky.setColorAt(0, colors.sky);
  sky.setColorAt(1, colors.sky.lighter(106));
  painter.fillRect(pane, sky);
  painter.setBrush(colors.sun);
  painter.drawEllipse(pane.center() + QPointF(pane.width() * 0.16, -pane.height() * 0.1),
                      pane.width() * 0.15, pane.width() * 0.15);
  painter.setBrush(theme::kGreen.lighter(130));
  painter.drawEllipse(
      QPointF(pane.left() + pane.width() * 0.2, pane.bottom() + pane.height() * 0.12),
      pane.width() * 0.55, pane.height() * 0.34);
  painter.setBrush(theme::kGreen);
  painter.drawEllipse(QPointF(pane.right(), pane.bottom() + pane.height() * 0.16),
                      pane.width() * 0.6, pane.height() * 0.34);
  painter.restore();
  painter.setBrush(QColor(255, 255, 255, 230));
  painter.drawRect(QRectF(frame.center().x() - edge / 2, frame.top(), edge, frame.height()));
  painter.drawRect(QRectF(frame.left(), frame.center().y() - edge / 2, frame.width(), edge));
}

void paintRug(QPainter& painter, const QRectF& area) {
  painter.setBrush(QColor(255, 255, 255, 46));
  painter.drawEllipse(area);
  painter.setBrush(QColor(201, 74, 38, 60));
  painter.drawEllipse(area.adjusted(area.width() * 0.04, area.height() * 0.1, -area.width() * 0.04,
                                    -area.height() * 0.1));
}

}  // namespace

void paintRoom(QPainter& painter, const QRectF& area, Daytime daytime) {
  const RoomColors colors = colorsOf(daytime);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setClipRect(area, Qt::IntersectClip);
  painter.fillRect(area, colors.wall);
  const double unit = area.height() / 100;
  // Everything stands around the middle, so that a narrow picture shows the same things.
  const QPointF middle(area.center().x(), area.top());
  const auto at = [&](double x, double y, double width, double height) {
    return QRectF(middle.x() + x * unit, middle.y() + y * unit, width * unit, height * unit);
  };
  painter.fillRect(QRectF(area.left(), area.top() + 78 * unit, area.width(), 22 * unit),
                   colors.floor);
  painter.setPen(Qt::NoPen);
  paintRug(painter, at(-62, 82, 124, 15));
  paintWindow(painter, at(-28, 10, 44, 50), colors);
  paintMotif(painter, at(22, 14, 24, 24), Motif::clock);
  paintMotif(painter, at(-34, 40, 54, 54), Motif::armchair);
  paintMotif(painter, at(-74, 38, 50, 52), Motif::plant);
  painter.setBrush(QColor(0x8C, 0x5E, 0x35));
  painter.drawRoundedRect(at(34, 70, 34, 4), unit, unit);
  painter.drawRect(at(37, 74, 2.5, 18));
  painter.drawRect(at(62, 74, 2.5, 18));
  paintMotif(painter, at(34, 35, 36, 40), Motif::lamp);
  painter.restore();
}

void paintFace(QPainter& painter, const QRectF& area, Face face) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(area.topLeft());
  painter.scale(area.width() / 100, area.height() / 100);
  QRadialGradient skin(QPointF(38, 32), 74);
  skin.setColorAt(0, QColor(0xFF, 0xE3, 0x7E));
  skin.setColorAt(1, QColor(0xF3, 0xAE, 0x33));
  painter.setPen(Qt::NoPen);
  painter.setBrush(skin);
  painter.drawEllipse(QRectF(4, 4, 92, 92));
  painter.setBrush(QColor(0x5B, 0x3A, 0x16));
  painter.drawEllipse(QPointF(34, 42), 6, 8);
  painter.drawEllipse(QPointF(66, 42), 6, 8);
  const double bend = face == Face::happy ? 20 : face == Face::sad ? -16 : 0;
  QPainterPath mouth(QPointF(30, 68 - bend / 4));
  mouth.quadTo(QPointF(50, 68 + bend), QPointF(70, 68 - bend / 4));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0x5B, 0x3A, 0x16), 6, Qt::SolidLine, Qt::RoundCap));
  painter.drawPath(mouth);
  painter.restore();
}

QImage roomImage(QSize size, Daytime daytime) {
  QImage image(size, QImage::Format_RGB32);
  QPainter painter(&image);
  paintRoom(painter, image.rect(), daytime);
  return image;
}

QImage productImage(QSize size, const Product& product) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(product.backdrop);
  QPainter painter(&image);
  const double side = std::min(size.width(), size.height()) * 0.92;
  paintMotif(painter, QRectF((size.width() - side) / 2, (size.height() - side) / 2, side, side),
             product.motif);
  return image;
}

QImage faceImage(int side, Face face) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  paintFace(painter, image.rect(), face);
  return image;
}

QByteArray png(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes;
}

}  // namespace kifo::shop
