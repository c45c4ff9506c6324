#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "apps/kifo/preview/PreviewOptions.h"

namespace kifo::tool {

/// A campaign of a gallery: what is shown, or why nothing is.
struct GalleryEntry {
  std::string file;  ///< Whose name it goes by.
  std::string title;
  std::shared_ptr<const PopupRequest> request;  ///< Null: `reason` says why.
  std::string reason;
  std::vector<std::string> notes;
};

/// Writes every campaign in every size, theme and direction as PNG, and an index.html of them.
/// `base` gives what does not vary; its width and height too when `hasSize`.
///
/// **Errors:** throws `std::runtime_error` when something cannot be written.
void writeGallery(const std::string& folder, const std::vector<GalleryEntry>& entries,
                  const Look& base, bool hasSize, Toolkit toolkit);

}  // namespace kifo::tool
