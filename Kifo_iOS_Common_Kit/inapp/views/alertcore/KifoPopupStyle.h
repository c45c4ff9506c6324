#pragma once

#include <cstdint>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// What an alert is about; decides its icon and its colour.
enum class KifoPopupStyle { success, error, notice, warning, info, edit, wait, question };

/// The style's colour as 24-bit RGB, such as 0x22B573.
KIFO_EXPORT std::uint32_t defaultColorInt(KifoPopupStyle style);
/// The colour of the titles of its buttons: black on the warning's yellow, white otherwise.
KIFO_EXPORT std::uint32_t defaultTextColorInt(KifoPopupStyle style);

}  // namespace kifo
