#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <cstdint>
#include <optional>

#include "platform/qt/DesktopNotification.h"
#include "platform/qt/NotificationImage.h"

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

/// How the picture travels.
struct DesktopPicture {
  QString path;  ///< Not empty: of the file, for services that may read it.
  std::optional<NotificationImage> data = std::nullopt;  ///< Set: the pixels.
};

/// The arguments of Notify, written for what the service can do: without markup the texts go as
/// they are, with it what the push carries is escaped; a service without bodies gets the body with
/// the title; one without actions gets none.
QVariantList notifyArguments(const DesktopNotification& notification, std::uint32_t replaces,
                             const DesktopCapabilities& capabilities,
                             const DesktopApplication& application, const DesktopPicture& picture);

}  // namespace kifo
