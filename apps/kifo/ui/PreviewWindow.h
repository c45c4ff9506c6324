#pragma once

#include <memory>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "apps/kifo/preview/PreviewOptions.h"

namespace kifo::tool {

/// Opens a window in which the popups can be used, one after the other, and prints what would be
/// reported of each. Returns when the last one, or the window, is closed.
///
/// **Threading:** UI thread only.
void runPreviewWindow(const std::vector<std::shared_ptr<const PopupRequest>>& requests,
                      const Look& look);

}  // namespace kifo::tool
