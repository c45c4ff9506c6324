#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// One decision of the SDK with its particulars.
struct Decision {
  std::string kind;  ///< "composed", "gated", "stored", "campaign", …: the full list is in
                     ///< docs/inspector.md.
  std::vector<std::pair<std::string, std::string>> particulars;
};

/// Receives the SDK's decisions and their reasons, for tools. Nothing is computed for it while none
/// is installed.
///
/// **Threading:** `decided` is called on the deciding thread, also on several at once; it must not
/// call the SDK.
class KIFO_EXPORT Inspector {
 public:
  virtual ~Inspector() = default;

  virtual void decided(const Decision& decision) = 0;
};

}  // namespace kifo
