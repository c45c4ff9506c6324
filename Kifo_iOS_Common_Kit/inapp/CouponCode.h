#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// A coupon's text and look.
///
/// A value: copies are independent.
struct CouponCode {
  std::string text;
  std::string color;                ///< Hex text.
  std::string backgroundColor;      ///< Hex text.
  std::optional<std::string> size;  ///< Font size in points, as text.
};

template <>
struct RecordFields<CouponCode> {
  static constexpr auto fields = std::tuple(
      field("text", &CouponCode::text), field("color", &CouponCode::color),
      field("backgroundColor", &CouponCode::backgroundColor), field("size", &CouponCode::size));
};

}  // namespace kifo
