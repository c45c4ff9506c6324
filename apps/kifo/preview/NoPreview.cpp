// What a build without a toolkit says of previews.
#include <iostream>

#include "apps/kifo/preview/PreviewOptions.h"

namespace kifo::tool {

int runPreview(const PreviewOptions&) {
  std::cerr << "kifo preview: this build has no popups; it was made without Qt\n";
  return 1;
}

}  // namespace kifo::tool
