#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <cstdint>
#include <optional>

#include "platform/qt/desktop/DesktopNotificationLedger.h"

namespace kifo {

/// What a notification service can do, as far as it matters here.
struct DesktopCapabilities {
  bool actions = false;
  bool body = true;
  bool bodyMarkup = false;

  static DesktopCapabilities of(const QStringList& names);
};

/// Who shows the notification.
struct DesktopApplication {
  QString name;
  QString icon;          ///< A theme's name or a path; empty for none.
  QString desktopEntry;  ///< Name of the application's .desktop file without its suffix, or empty.
  QString openLabel;     ///< What the tap on the body is called where a service lists it.
};

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

  /// Reads a picture file of any format and scales it down to 512 × 512 at most; none when it is no
  /// picture. **Threading:** any thread; slow for large pictures.
  static std::optional<NotificationImage> read(const QString& path);
};

QDBusArgument& operator<<(QDBusArgument& argument, const NotificationImage& image);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotificationImage& image);

/// How the picture is sent.
struct DesktopPicture {
  QString path;  ///< Not empty: of the file, for services that may read it.
  std::optional<NotificationImage> data = std::nullopt;  ///< Set: the pixels.
};

/// The arguments of Notify for a service with these capabilities. With "body-markup" the texts are
/// escaped; without "body" the body follows the title; without "actions" there are none.
QVariantList notifyArguments(const DesktopNotification& notification, std::uint32_t replaces,
                             const DesktopCapabilities& capabilities,
                             const DesktopApplication& application, const DesktopPicture& picture);

}  // namespace kifo

Q_DECLARE_METATYPE(kifo::NotificationImage)
