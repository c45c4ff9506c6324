#include "Kifo_iOS_Common_Kit/inapp/views/PanelShadow.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include <QImage>
#include <QPainter>

namespace kifo {
namespace {

constexpr int kReach = PanelShadow::reach;
constexpr int kDrop = 8;        ///< The light comes from above.
constexpr int kPasses = 3;      ///< Box blurs that make a soft one.
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

/// The shadow of a panel as small as its corners allow; its middle lines can be stretched.
QImage tile(double scale, double radius) {
  const int side = static_cast<int>(std::ceil((2 * (kReach + radius) + 2) * scale));
  QImage mask(side, side, QImage::Format_Alpha8);
  mask.fill(Qt::transparent);
  QPainter painter(&mask);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, kDarkness));
  const double inset = kReach * scale;
  painter.drawRoundedRect(QRectF(inset, inset, side - 2 * inset, side - 2 * inset), radius * scale,
                          radius * scale);
  painter.end();
  blur(mask, std::max(1, static_cast<int>(kReach * scale / (kPasses + 1))));
  return mask.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

const QImage& tileFor(double scale, double radius) {
  static auto& tiles = *new std::map<std::pair<int, int>, QImage>;  // never freed: a few small ones
  auto& image = tiles[{static_cast<int>(std::lround(scale * 100)), static_cast<int>(radius)}];
  if (image.isNull()) image = tile(scale, radius);
  return image;
}

}  // namespace

void PanelShadow::paint(QPainter& painter, const QRectF& panel, double cornerRadius) {
  const QImage& image = tileFor(painter.device()->devicePixelRatioF(), cornerRadius);
  const QRectF target = panel.adjusted(-kReach, -kReach + kDrop, kReach, kReach + kDrop);
  const double corner = kReach + cornerRadius;
  const double source = image.width() / 2.0 - 1;
  const double to[] = {0, corner, target.width() - corner, target.width()};
  const double down[] = {0, corner, target.height() - corner, target.height()};
  const double from[] = {0, source, image.width() - source, 1.0 * image.width()};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      if (row == 1 && column == 1) continue;  // the panel lies there
      painter.drawImage(QRectF(target.x() + to[column], target.y() + down[row],
                               to[column + 1] - to[column], down[row + 1] - down[row]),
                        image,
                        QRectF(from[column], from[row], from[column + 1] - from[column],
                               from[row + 1] - from[row]));
    }
  }
}

}  // namespace kifo
