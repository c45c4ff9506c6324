#pragma once

#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The desktop's clipboard. **Threading:** UI thread only.
class KIFO_EXPORT Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  virtual void setString(const std::string& text) = 0;
};

}  // namespace kifo
