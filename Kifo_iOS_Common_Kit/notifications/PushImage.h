#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
namespace kifo {

/// The bytes behind an address, or why there are none.
struct PushImage {
  std::optional<std::string> bytes;
  std::string error;  ///< One line; set when there are no bytes.
};

/// Loads an image through the platform's HTTP transport, 10 MB at most. Only http and https are
/// followed, and only a 2xx answer counts whose body begins as a JPEG, PNG, GIF, BMP, TIFF, WebP,
/// AVIF, HEIC or SVG file does.
///
/// **Threading:** waits on the calling thread, never longer than `limit` seconds, also when the
/// calling thread is the one that the answer would have come on. Never call it on the UI thread.
PushImage loadPushImage(const std::string& url, double limit = 7.0);

/// Loads the image behind `url` and hands `handler` a copy of `content` with it attached, or
/// `content` itself and a console line why there is none. `handler` runs once, before this returns.
///
/// **Threading:** waits like `loadPushImage`, and writes a file.
KIFO_SHARED void attachPushImage(
    const std::shared_ptr<const NotificationContent>& content, const std::string& url,
    const std::function<void(std::shared_ptr<const NotificationContent>)>& handler);

}  // namespace kifo
