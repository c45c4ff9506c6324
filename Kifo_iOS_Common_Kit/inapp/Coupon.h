#pragma once

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/Border.h"
#include "Kifo_iOS_Common_Kit/inapp/Button.h"
#include "Kifo_iOS_Common_Kit/inapp/CouponCode.h"

namespace kifo {

/// A coupon code to show and to copy.
///
/// A value: copies are independent.
struct Coupon {
  CouponCode code;
  Button button;
  Border border;
};

template <>
struct RecordFields<Coupon> {
  static constexpr auto fields =
      std::tuple(field("code", &Coupon::code), field("button", &Coupon::button),
                 field("border", &Coupon::border));
};

}  // namespace kifo
