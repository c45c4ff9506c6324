#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// One picture of a carousel.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct AppCommunicationItemImage {
  std::optional<std::string> url;
};

template <>
struct RecordFields<AppCommunicationItemImage> {
  static constexpr auto fields = std::tuple(field("url", &AppCommunicationItemImage::url));
};

}  // namespace kifo
