#include "Kifo_iOS_Common_Kit/inapp/views/ImageDecoder.h"

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>

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

/// A larger picture is read at twice the size wanted, which is quick, and brought to it smoothly.
void readSmaller(QImageReader& reader, QSize bounds) {
  const QSize size = reader.size();
  const QSize twice = size.scaled(bounds * 2, Qt::KeepAspectRatio).expandedTo({1, 1});
  if (twice.width() < size.width()) reader.setScaledSize(twice);
}

QImage fitted(QImage image, QSize bounds) {
  if (image.width() > bounds.width() || image.height() > bounds.height()) {
    image = image.scaled(image.size().scaled(bounds, Qt::KeepAspectRatio).expandedTo({1, 1}),
                         Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  }
  return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
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
  return image.isNull() ? image : fitted(image, bounds);
}

}  // namespace kifo
