#include "Kifo_iOS_Common_Kit/device/FormattableNumeric.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kifo {

std::string FormattableNumeric::text(double number) {
  const double size = std::abs(number);
  const bool isPlain = size == 0.0 || (size >= 1e-4 && size < 1e16);
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                 isPlain ? std::chars_format::fixed : std::chars_format::scientific)
                       .ptr;
  std::string written(buffer.data(), end);
  if (written.find_first_of(".en") == std::string::npos) written += ".0";
  return written;
}

}  // namespace kifo
