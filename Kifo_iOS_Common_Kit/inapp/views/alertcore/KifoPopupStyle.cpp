#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyle.h"

namespace kifo {

std::uint32_t defaultColorInt(KifoPopupStyle style) {
  switch (style) {
    case KifoPopupStyle::success:
      return 0x22B573;
    case KifoPopupStyle::error:
      return 0xC1272D;
    case KifoPopupStyle::notice:
      return 0x727375;
    case KifoPopupStyle::warning:
      return 0xFFD110;
    case KifoPopupStyle::info:
      return 0x2866BF;
    case KifoPopupStyle::edit:
      return 0xA429FF;
    case KifoPopupStyle::wait:
      return 0xD62DA5;
    case KifoPopupStyle::question:
      return 0x727375;
  }
  return 0x727375;
}

std::uint32_t defaultTextColorInt(KifoPopupStyle style) {
  return style == KifoPopupStyle::warning ? 0x000000 : 0xFFFFFF;
}

}  // namespace kifo
