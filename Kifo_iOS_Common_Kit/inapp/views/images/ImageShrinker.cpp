#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageShrinker.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kifo {
namespace {

/// What one pixel of a line gives to one of the shorter line.
struct Share {
  int from;
  int to;
  float weight;
};

/// All the shares of a line of `from` pixels that becomes one of `to`, in order. The weights that
/// one pixel is given sum up to 1.
std::vector<Share> sharesOf(int from, int to) {
  std::vector<Share> shares;
  for (int pixel = 0; pixel < from; ++pixel) {
    qint64 at = qint64{pixel} * to;  // either line is from * to long
    const qint64 end = at + to;
    while (at < end) {
      const qint64 target = at / from;
      const qint64 next = std::min(end, (target + 1) * from);
      shares.push_back({pixel, static_cast<int>(target), static_cast<float>(next - at) / from});
      at = next;
    }
  }
  return shares;
}

/// Four channels of each pixel of a line.
using Line = std::vector<float>;

void addPixel(QRgb pixel, float weight, float* sum) {
  for (int channel = 0; channel < 4; ++channel) {
    sum[channel] += static_cast<float>((pixel >> (8 * channel)) & 0xFF) * weight;
  }
}

Line narrowed(const QImage& line, const std::vector<Share>& shares, int width) {
  Line sums(static_cast<std::size_t>(width) * 4);
  const auto* pixels = reinterpret_cast<const QRgb*>(line.constScanLine(0));
  for (const Share& share : shares) {
    addPixel(pixels[share.from], share.weight, &sums[static_cast<std::size_t>(share.to) * 4]);
  }
  return sums;
}

/// Writes the line and empties it.
void write(Line& sums, uchar* line) {
  auto* pixels = reinterpret_cast<QRgb*>(line);
  for (std::size_t at = 0; at < sums.size(); at += 4) {
    QRgb pixel = 0;
    for (std::size_t channel = 0; channel < 4; ++channel) {
      const long value = std::clamp(std::lround(sums[at + channel]), 0L, 255L);
      pixel |= static_cast<QRgb>(value) << (8 * channel);
    }
    *pixels++ = pixel;
  }
  std::ranges::fill(sums, 0.0F);
}

/// Line by line: a large picture is converted on those shared threads as well.
QImage premultiplied(const QImage& image, int line) {
  return image.copy(0, line, image.width(), 1).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace

QImage shrunk(const QImage& image, QSize bounds) {
  const bool larger = image.width() > bounds.width() || image.height() > bounds.height();
  const QSize size =
      larger ? image.size().scaled(bounds, Qt::KeepAspectRatio).expandedTo({1, 1}) : image.size();
  QImage result(size, QImage::Format_ARGB32_Premultiplied);
  if (result.isNull()) return result;
  const auto across = sharesOf(image.width(), size.width());
  Line sums(static_cast<std::size_t>(size.width()) * 4);
  Line line;
  int read = -1;
  int written = 0;
  for (const Share& share : sharesOf(image.height(), size.height())) {
    if (share.to != written) write(sums, result.scanLine(written++));
    if (share.from != read) line = narrowed(premultiplied(image, share.from), across, size.width());
    read = share.from;
    std::ranges::transform(line, sums, sums.begin(),
                           [&](float more, float sum) { return sum + more * share.weight; });
  }
  write(sums, result.scanLine(written));
  return result;
}

}  // namespace kifo
