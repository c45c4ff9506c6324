#include "platform/qt/NotificationImage.h"

#include <QImage>
#include <QImageReader>

namespace kifo {
namespace {

constexpr QSize LARGEST(512, 512);

}  // namespace

std::optional<NotificationImage> NotificationImage::read(const QString& path) {
  QImageReader reader(path);
  reader.setDecideFormatFromContent(true);  // the file's name says nothing of its format
  reader.setAutoTransform(true);
  if (const QSize size = reader.size();
      size.width() > LARGEST.width() || size.height() > LARGEST.height()) {
    reader.setScaledSize(size.scaled(LARGEST, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
  }
  QImage image = reader.read();
  if (image.isNull()) return std::nullopt;
  const bool alpha = image.hasAlphaChannel();
  image.convertTo(alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
  return NotificationImage{
      .width = image.width(),
      .height = image.height(),
      .bytesPerLine = static_cast<int>(image.bytesPerLine()),
      .hasAlpha = alpha,
      .channels = alpha ? 4 : 3,
      .pixels = QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes())};
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotificationImage& image) {
  argument.beginStructure();
  argument << image.width << image.height << image.bytesPerLine << image.hasAlpha
           << image.bitsPerSample << image.channels << image.pixels;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotificationImage& image) {
  argument.beginStructure();
  argument >> image.width >> image.height >> image.bytesPerLine >> image.hasAlpha >>
      image.bitsPerSample >> image.channels >> image.pixels;
  argument.endStructure();
  return argument;
}

}  // namespace kifo
