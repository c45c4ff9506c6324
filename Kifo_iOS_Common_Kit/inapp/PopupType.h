#pragma once

#include <optional>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The five kinds of popup.
enum class PopupType { popup, survey, emoji, score, openEnded };

/// "POPUP", "SURVEY", "EMOJI", "SCORE" or "OPEN_ENDED", as the server writes it.
KIFO_EXPORT std::string_view rawValue(PopupType value);

/// The kind whose raw string is exactly `text`; none for any other.
KIFO_EXPORT std::optional<PopupType> popupType(std::string_view text);

}  // namespace kifo
