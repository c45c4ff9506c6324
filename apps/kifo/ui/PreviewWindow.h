#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "apps/kifo/preview/PreviewOptions.h"

namespace kifo::tool {

/// The popups of a preview, one after the other.
class PreviewRun {
 public:
  using Request = std::shared_ptr<const PopupRequest>;

  PreviewRun(std::vector<Request> requests, PopUpOptions options)
      : requests_(std::move(requests)), options_(std::move(options)) {}

  [[nodiscard]] const PopUpOptions& options() const { return options_; }
  /// The next popup, whose answers are printed; null after the last.
  [[nodiscard]] Request next() { return next_ < requests_.size() ? requests_[next_++] : nullptr; }

 private:
  const std::vector<Request> requests_;
  const PopUpOptions options_;
  std::size_t next_ = 0;
};

/// Opens a window in which the popups can be used, one after the other, and prints what would be
/// reported of each. Returns when the last one, or the window, is closed.
///
/// **Threading:** UI thread only.
void runPreviewWindow(const std::vector<std::shared_ptr<const PopupRequest>>& requests,
                      const Look& look, Toolkit toolkit);

/// The same in a scene; without effect in a build without Qt Quick.
void runPreviewScene(PreviewRun& run, const Look& look);

}  // namespace kifo::tool
