#pragma once

#include <cstdint>

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/SelectedOperator.h"

namespace kifo {

/// A condition on a score.
///
/// A value: copies are independent.
struct Selection {
  std::int64_t value = 0;
  SelectedOperator selectedOperator = SelectedOperator::greaterThan;
};

template <>
struct RecordFields<Selection> {
  static constexpr auto fields = std::tuple(
      field("value", &Selection::value), field("selectedOperator", &Selection::selectedOperator));
};

}  // namespace kifo
