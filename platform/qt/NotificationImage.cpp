#include "platform/qt/NotificationImage.h"

#include <QFile>
#include <QImage>

#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoder.h"

namespace kifo {
namespace {

constexpr QSize LARGEST(512, 512);

}  // namespace

std::optional<NotificationImage> NotificationImage::read(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  QImage image = decodeImage(file.readAll().toStdString(), LARGEST);
  if (image.isNull()) return std::nullopt;
  image.convertTo(QImage::Format_RGBA8888);
  return NotificationImage{
      .width = image.width(),
      .height = image.height(),
      .bytesPerLine = static_cast<int>(image.bytesPerLine()),
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
