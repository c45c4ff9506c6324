#pragma once

#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Takes every line that the SDK prints, whole, without its newline.
///
/// **Threading:** called from any thread, also several at once, on the thread that had something to
/// say; it must not block and must not call the SDK back.
class KIFO_EXPORT ConsoleSink {
 public:
  virtual ~ConsoleSink() = default;

  virtual void write(std::string line) = 0;
};

}  // namespace kifo
