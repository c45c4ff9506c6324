#pragma once

#include <string>

namespace kifo {

/// Numbers as payloads carry them in text.
struct FormattableNumeric {
  /// The shortest text that reads back as the same double. A whole number keeps its ".0", and an
  /// exponent stands only below 0.0001 and from 1e16 on.
  static std::string text(double number);
};

}  // namespace kifo
