#pragma once

#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Receives every line that the SDK prints, without a line break; control characters are escaped.
///
/// **Threading:** `write` is called on the thread that prints, also on several at once; it must not
/// block and must not call the SDK.
class KIFO_EXPORT ConsoleSink {
 public:
  virtual ~ConsoleSink() = default;

  virtual void write(std::string line) = 0;
};

}  // namespace kifo
