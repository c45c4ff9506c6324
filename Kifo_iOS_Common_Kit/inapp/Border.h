#pragma once

#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// A coupon's border.
///
/// A value: copies are independent.
struct Border {
  std::string color;      ///< Hex text.
  std::string thickness;  ///< A number written as text, logical pixels.
};

template <>
struct RecordFields<Border> {
  static constexpr auto fields =
      std::tuple(field("color", &Border::color), field("thickness", &Border::thickness));
};

}  // namespace kifo
