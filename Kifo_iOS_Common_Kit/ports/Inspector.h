#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// One thing that the SDK decided, with its particulars in the order in which they matter.
struct Decision {
  std::string kind;  ///< "composed", "gated", "stored", "campaign", …: the full list is in
                     ///< docs/inspector.md.
  std::vector<std::pair<std::string, std::string>> particulars;
};

/// Told what the SDK decides and why, for tools. It adds nothing to the console and costs nothing
/// while none is installed.
///
/// **Threading:** called on whichever thread decided, also several at once; must not call back.
class KIFO_EXPORT Inspector {
 public:
  virtual ~Inspector() = default;

  virtual void decided(const Decision& decision) = 0;
};

}  // namespace kifo
