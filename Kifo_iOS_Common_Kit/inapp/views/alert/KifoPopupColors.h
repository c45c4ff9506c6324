#pragma once

#include <QColor>
#include <cstdint>

/// What the alert needs of colours beyond `PopupColors.h`.
///
/// **Threading:** pure functions.
namespace kifo {

/// The colour of a 24-bit RGB number; higher bits are ignored.
QColor colorFromInt(std::uint32_t rgb);

/// `wished`, or black or white if that could hardly be read on `behind`. An invalid wish is
/// white's.
QColor readableOn(const QColor& wished, const QColor& behind);

}  // namespace kifo
