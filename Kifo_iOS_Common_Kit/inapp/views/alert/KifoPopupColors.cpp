#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupColors.h"

#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupColors.h"

namespace kifo {
namespace {

// An alert's colours are the programmer's and not a campaign's, so more is asked of them than that
// they can just be told apart. White on the green of success (2.6) passes.
constexpr double kLeastContrast = 2.5;

}  // namespace

QColor colorFromInt(std::uint32_t rgb) {
  return QColor::fromRgb(rgb & 0xFFFFFFU);
}

QColor readableOn(const QColor& wished, const QColor& behind) {
  const QColor first = wished.isValid() ? wished : QColor(Qt::white);
  return contrastRatio(over(first, behind), behind) >= kLeastContrast ? first : inkOn(behind);
}

}  // namespace kifo
