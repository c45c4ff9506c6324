#pragma once

#include <cstdint>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// A range of scores.
///
/// A value: copies are independent.
struct Interval {
  std::int64_t fromValue = 0;
  std::int64_t toValue = 0;
};

template <>
struct RecordFields<Interval> {
  static constexpr auto fields =
      std::tuple(field("fromValue", &Interval::fromValue), field("toValue", &Interval::toValue));
};

}  // namespace kifo
