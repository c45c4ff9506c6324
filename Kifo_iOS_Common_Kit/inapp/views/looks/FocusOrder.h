#pragma once

#include <QtGlobal>

namespace kifo {

/// The stop of the Tab key after `here`, or before it, of `count` in a circle; `count` is above 0.
/// `here` is -1 while none of them has the focus.
constexpr qsizetype nextStop(qsizetype here, qsizetype count, bool forwards) {
  if (here < 0) return forwards ? 0 : count - 1;
  return (here + (forwards ? 1 : -1) + count) % count;
}

}  // namespace kifo
