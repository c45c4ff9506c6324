#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QMetaType>
#include <QString>
#include <optional>

namespace kifo {

/// A picture as the notification service takes it over the bus, signature (iiibiiay): rows of 8-bit
/// red, green, blue and alpha.
struct NotificationImage {
  int width = 0;
  int height = 0;
  int bytesPerLine = 0;
  bool hasAlpha = true;
  int bitsPerSample = 8;
  int channels = 4;
  QByteArray pixels;

  /// Reads a picture file, whatever its name says of its format, and makes it no larger than the
  /// bus should carry; none when it is no picture. **Threading:** any thread; slow for large
  /// pictures.
  static std::optional<NotificationImage> read(const QString& path);
};

QDBusArgument& operator<<(QDBusArgument& argument, const NotificationImage& image);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotificationImage& image);

}  // namespace kifo

Q_DECLARE_METATYPE(kifo::NotificationImage)
