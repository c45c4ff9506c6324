#pragma once

#include <optional>
#include <string>

namespace kifo {

/// The bytes behind an address, or why there are none.
struct PushImage {
  std::optional<std::string> bytes;
  std::string error;  ///< One line; set when there are no bytes.
};

/// Loads an image through the platform's HTTP transport, 10 MB at most. Only http and https are
/// followed, and only a 2xx answer counts.
///
/// **Threading:** waits on the calling thread, never longer than `limit` seconds, also when the
/// calling thread is the one that the answer would have come on. Never call it on the UI thread.
PushImage loadPushImage(const std::string& url, double limit = 7.0);

}  // namespace kifo
