#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoder.h"

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>

#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageShrinker.h"

namespace kifo {
namespace {

constexpr qint64 kMaximumPixels = 4096LL * 4096;

bool allowed(const QByteArray& format) {
  return format == "png" || format == "jpeg" || format == "jpg" || format == "gif";
}

bool acceptable(const QImageReader& reader) {
  const QSize size = reader.size();
  return allowed(reader.format()) && size.isValid() && !size.isEmpty() &&
         static_cast<qint64>(size.width()) * size.height() <= kMaximumPixels;
}

/// A larger picture is read at twice the size wanted or somewhat more, where its format can do so
/// while it decodes. JPEG can by eighths; any other size it would bring about by `QImage::scaled`.
void readSmaller(QImageReader& reader, QSize bounds) {
  const QSize size = reader.size();
  const QSize twice = size.scaled(bounds * 2, Qt::KeepAspectRatio).expandedTo({1, 1});
  if (twice.width() >= size.width() || !reader.supportsOption(QImageIOHandler::ScaledSize)) return;
  if (reader.format() == "png") return reader.setScaledSize(twice);
  const int eighths = (8 * twice.width() + size.width() - 1) / size.width();
  reader.setScaledSize((size * eighths + QSize(7, 7)) / 8);
  // A pixel too many or too few goes without smoothing.
  reader.setQuality(0);
}

}  // namespace

QImage decodeImage(const std::string& data, QSize bounds) {
  QByteArray bytes = QByteArray::fromRawData(data.data(), static_cast<qsizetype>(data.size()));
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  if (!acceptable(reader)) return {};
  readSmaller(reader, bounds);
  const QImage image = reader.read();
  return image.isNull() ? image : shrunk(image, bounds);
}

}  // namespace kifo
