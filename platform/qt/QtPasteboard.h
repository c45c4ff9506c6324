#pragma once

#include <string>

#include "Kifo_iOS_Common_Kit/ports/Pasteboard.h"

namespace kifo {

/// The desktop's clipboard through Qt. **Threading:** UI thread only. Without a QGuiApplication it
/// does nothing.
class KIFO_EXPORT QtPasteboard final : public Pasteboard {
 public:
  void setString(const std::string& text) override;
};

}  // namespace kifo
