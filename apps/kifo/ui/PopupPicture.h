#pragma once

#include <QImage>
#include <QPalette>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "apps/kifo/preview/PreviewOptions.h"

class QWidget;

namespace kifo::tool {

/// Draws popups over a host's window that is nowhere shown, with one of the toolkits.
///
/// **Threading:** UI thread only; waits there, 10 s at most, for a campaign's pictures.
class PopupPicture {
 public:
  explicit PopupPicture(Toolkit toolkit);

  /// What the user sees of `request` over a window of that look.
  QImage of(const std::shared_ptr<const PopupRequest>& request, const Look& look);

  /// Popup options for the look; the pictures come from one loader.
  [[nodiscard]] PopUpOptions options(const Look& look) const;
  /// Gives a host's window its size, its colours and its direction.
  static void dress(QWidget& host, const Look& look);
  /// A host's colours.
  static QPalette paletteOf(const Look& look);

 private:
  void awaitPictures(const PopupRequest& request);

  const Toolkit toolkit_;
  const std::shared_ptr<ImageLoader> loader_;
};

/// Runs what the event loop has to do now.
void settle();

/// What the user sees of `request` in a scene of that look; a null image in a build without Qt
/// Quick.
QImage pictureInScene(const std::shared_ptr<const PopupRequest>& request,
                      const PopUpOptions& options, const Look& look);

}  // namespace kifo::tool
