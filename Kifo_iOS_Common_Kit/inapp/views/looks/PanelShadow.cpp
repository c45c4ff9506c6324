#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelShadow.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include <QImage>
#include <QPainter>

namespace kifo {
namespace {

constexpr int kReach = PanelShadow::reach;
constexpr int kDrop = 8;        ///< The light comes from above.
constexpr int kPasses = 3;      ///< Box blurs that make a soft one.
constexpr int kRepeated = 64;   ///< Pixels of a side that are painted again and again.
constexpr int kOverlap = 3;     ///< Of the painted pieces and the panel, whose edge is soft.
constexpr int kDarkness = 105;  ///< Alpha under the panel's edge, of 255.

using Row = std::vector<int>;

/// One box blur along a line of `count` bytes that are `stride` apart.
void blurLine(uchar* line, int count, int stride, int radius, Row& copy) {
  copy.resize(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) copy[static_cast<std::size_t>(i)] = line[i * stride];
  int sum = 0;
  for (int i = 0; i < std::min(radius, count); ++i) sum += copy[static_cast<std::size_t>(i)];
  for (int i = 0; i < count; ++i) {
    if (i + radius < count) sum += copy[static_cast<std::size_t>(i + radius)];
    if (i > radius) sum -= copy[static_cast<std::size_t>(i - radius - 1)];
    line[i * stride] = static_cast<uchar>(sum / (2 * radius + 1));
  }
}

void blur(QImage& image, int radius) {
  Row copy;
  const int pitch = static_cast<int>(image.bytesPerLine());
  for (int pass = 0; pass < kPasses; ++pass) {
    for (int y = 0; y < image.height(); ++y)
      blurLine(image.scanLine(y), image.width(), 1, radius, copy);
    for (int x = 0; x < image.width(); ++x)
      blurLine(image.bits() + x, image.height(), pitch, radius, copy);
  }
}

/// How far the corner of a shadow reaches along its sides; from there on they are all the same.
int cornerOf(double scale, double radius) {
  return static_cast<int>(std::ceil((2 * kReach + radius) * scale));
}

/// The shadow of a panel, `size` with its reach, in pixels of the device.
QImage blurred(QSize size, double scale, double radius) {
  QImage mask(size, QImage::Format_Alpha8);
  mask.fill(Qt::transparent);
  QPainter painter(&mask);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, kDarkness));
  const double inset = kReach * scale;
  painter.drawRoundedRect(QRectF({}, size).adjusted(inset, inset, -inset, -inset), radius * scale,
                          radius * scale);
  painter.end();
  blur(mask, std::max(1, static_cast<int>(kReach * scale / (kPasses + 1))));
  QImage shadow = mask.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  // A panel that is not opaque must not show its own shadow.
  painter.begin(&shadow);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::black);
  painter.drawRoundedRect(
      QRectF({}, size).adjusted(inset, inset - kDrop * scale, -inset, -inset - kDrop * scale),
      radius * scale, radius * scale);
  return shadow;
}

using Key = std::tuple<int, int, int, int>;

/// The shadow of a panel that large, or of one just large enough to be repeated to that size.
const QImage& pictureFor(QSize size, double scale, double radius) {
  static auto& pictures = *new std::map<Key, QImage>;  // never freed: a few small ones
  const int largest = 2 * cornerOf(scale, radius) + kRepeated;
  const QSize own = size.boundedTo({largest, largest});
  const auto hundredths = static_cast<int>(std::lround(scale * 100));
  auto& image =
      pictures[{hundredths, static_cast<int>(std::lround(radius)), own.width(), own.height()}];
  if (image.isNull()) image = blurred(own, scale, radius);
  return image;
}

/// A stretch of one of the shadow's sides: where it lies in the picture and where it is painted.
struct Piece {
  int from;
  int to;
  int length;
};

/// What lies between the corners of a side of `length`, of which the picture has `pictured`.
std::vector<Piece> between(int length, int pictured, int corner) {
  std::vector<Piece> pieces;
  if (length <= pictured) return pieces;
  for (int at = corner; at < length - corner; at += kRepeated) {
    pieces.push_back({corner, at, std::min(kRepeated, length - corner - at)});
  }
  return pieces;
}

/// The two ends of a side; they are all of one that is in the picture as long as it is.
std::pair<Piece, Piece> ends(int length, int pictured, int corner) {
  if (length <= pictured) {
    const int half = length / 2;
    return {{0, 0, half}, {half, half, length - half}};
  }
  return {{0, 0, corner}, {pictured - corner, length - corner, corner}};
}

/// The outermost `depth` of either end.
std::pair<Piece, Piece> rims(const std::pair<Piece, Piece>& ends, int depth) {
  const auto& [first, last] = ends;
  const int inner = std::min(depth, first.length);
  const int outer = std::min(depth, last.length);
  const int skipped = last.length - outer;
  return {{first.from, first.to, inner}, {last.from + skipped, last.to + skipped, outer}};
}

void paintPieces(QPainter& painter, const QImage& image, QSize size, int corner, int depth) {
  const auto put = [&](const Piece& x, const Piece& y) {
    painter.drawImage(QPoint(x.to, y.to), image, QRect(x.from, y.from, x.length, y.length));
  };
  const auto columns = ends(size.width(), image.width(), corner);
  const auto rows = ends(size.height(), image.height(), corner);
  for (const Piece& x : {columns.first, columns.second}) {
    for (const Piece& y : {rows.first, rows.second}) put(x, y);
  }
  // Of the sides only what the panel does not cover.
  const auto [top, bottom] = rims(rows, depth);
  for (const Piece& x : between(size.width(), image.width(), corner)) {
    put(x, top);
    put(x, bottom);
  }
  const auto [left, right] = rims(columns, depth);
  for (const Piece& y : between(size.height(), image.height(), corner)) {
    put(left, y);
    put(right, y);
  }
}

}  // namespace

void PanelShadow::paint(QPainter& painter, const QRectF& panel, double cornerRadius) {
  const double scale = painter.device()->devicePixelRatioF();
  const QRectF place = panel.adjusted(-kReach, -kReach + kDrop, kReach, kReach + kDrop);
  const QSize size = (place.size() * scale).toSize();
  const int depth = static_cast<int>(std::ceil((kReach + kDrop + kOverlap) * scale));
  painter.save();
  painter.translate(place.topLeft());
  painter.scale(1 / scale, 1 / scale);
  paintPieces(painter, pictureFor(size, scale, cornerRadius), size, cornerOf(scale, cornerRadius),
              depth);
  painter.restore();
}

}  // namespace kifo
