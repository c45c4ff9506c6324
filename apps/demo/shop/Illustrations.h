#pragma once

#include <QByteArray>
#include <QImage>
#include <QPainter>

#include "apps/demo/shop/Catalogue.h"

/// The shop's pictures. All of them are drawn, none is loaded.
namespace kifo::shop {

/// A product, filling the square `area`, without its backdrop.
void paintMotif(QPainter& painter, const QRectF& area, Motif motif);

enum class Daytime { morning, noon, evening };

/// A room with the shop's things in it, filling `area`.
void paintRoom(QPainter& painter, const QRectF& area, Daytime daytime);

enum class Face { sad, fair, happy };

/// A round face, filling the square `area`.
void paintFace(QPainter& painter, const QRectF& area, Face face);

QImage roomImage(QSize size, Daytime daytime);
QImage productImage(QSize size, const Product& product);
QImage faceImage(int side, Face face);

/// The image as a PNG file's bytes.
QByteArray png(const QImage& image);

}  // namespace kifo::shop
