#include "platform/qt/desktop/DesktopNotificationMessage.h"

#include <QFile>
#include <QImage>
#include <QUrl>
#include <QVariantMap>

#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoder.h"

namespace kifo {
namespace {

constexpr int SERVICES_OWN_TIMEOUT = -1;
constexpr QSize LARGEST_PICTURE(512, 512);
// Desktops show no more of a text; services are slow with more.
constexpr qsizetype LONGEST_TITLE = 256;
constexpr qsizetype LONGEST_BODY = 4096;

/// The bus cuts a text at a null character, and services with markup refuse control characters.
bool isShown(QChar c) {
  return c.category() != QChar::Other_Control || c == QChar::LineFeed || c == QChar::Tabulation;
}

QString readable(const std::string& text, qsizetype longest) {
  QString whole = QString::fromStdString(text);
  whole.removeIf([](QChar c) { return !isShown(c); });
  if (whole.size() <= longest) return whole;
  whole.truncate(whole.at(longest - 1).isHighSurrogate() ? longest - 1 : longest);
  return whole + QChar(0x2026);
}

QString summaryOf(const NotificationContent& content, const DesktopCapabilities& capabilities,
                  const DesktopApplication& application) {
  const QString title =
      content.title.empty() ? application.name : readable(content.title, LONGEST_TITLE);
  if (capabilities.body || content.body.empty()) return title;
  return title + QStringLiteral(": ") + readable(content.body, LONGEST_BODY);
}

QString bodyOf(const NotificationContent& content, const DesktopCapabilities& capabilities) {
  if (!capabilities.body) return {};
  QString body = readable(content.body, LONGEST_BODY);
  if (!capabilities.bodyMarkup) return body;
  return body.replace(QLatin1Char('&'), QLatin1String("&amp;"))
      .replace(QLatin1Char('<'), QLatin1String("&lt;"))
      .replace(QLatin1Char('>'), QLatin1String("&gt;"));
}

QStringList actionsOf(const DesktopNotification& notification,
                      const DesktopCapabilities& capabilities, const QString& openLabel) {
  QStringList actions;
  if (!capabilities.actions) return actions;
  actions << QLatin1String(DesktopNotificationLedger::DEFAULT_KEY) << openLabel;
  for (std::size_t index = 0; index < notification.actions.size(); ++index) {
    actions << QString::fromStdString(DesktopNotificationLedger::keyOf(index))
            << readable(notification.actions[index].title, LONGEST_TITLE);
  }
  return actions;
}

QVariantMap hintsOf(const DesktopApplication& application, const DesktopPicture& picture) {
  QVariantMap hints;
  if (!application.desktopEntry.isEmpty()) {
    hints[QStringLiteral("desktop-entry")] = application.desktopEntry;
  }
  if (picture.data) {
    hints[QStringLiteral("image-data")] = QVariant::fromValue(*picture.data);
  } else if (!picture.path.isEmpty()) {
    hints[QStringLiteral("image-path")] =
        QString::fromLatin1(QUrl::fromLocalFile(picture.path).toEncoded());
  }
  return hints;
}

}  // namespace

DesktopCapabilities DesktopCapabilities::of(const QStringList& names) {
  const auto has = [&](const char* name) { return names.contains(QLatin1String(name)); };
  return {has("actions"), has("body"), has("body-markup")};
}

std::optional<NotificationImage> NotificationImage::read(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  QImage image = decodeImage(file.readAll().toStdString(), LARGEST_PICTURE);
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

QVariantList notifyArguments(const DesktopNotification& notification, std::uint32_t replaces,
                             const DesktopCapabilities& capabilities,
                             const DesktopApplication& application, const DesktopPicture& picture) {
  const NotificationContent& content = *notification.content;
  return {application.name,
          replaces,
          application.icon,
          summaryOf(content, capabilities, application),
          bodyOf(content, capabilities),
          actionsOf(notification, capabilities, application.openLabel),
          hintsOf(application, picture),
          SERVICES_OWN_TIMEOUT};
}

}  // namespace kifo
