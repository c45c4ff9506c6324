#pragma once

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/CouponCode.h"

namespace kifo {

/// The copy button's look before and after copying.
///
/// A value: copies are independent.
struct Button {
  CouponCode active;    ///< Before.
  CouponCode inactive;  ///< After.
};

template <>
struct RecordFields<Button> {
  static constexpr auto fields =
      std::tuple(field("active", &Button::active), field("inactive", &Button::inactive));
};

}  // namespace kifo
