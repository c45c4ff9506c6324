#pragma once

#include <QImage>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "apps/kifo/preview/PreviewOptions.h"

class QWidget;

namespace kifo::tool {

/// Draws popups over a host's window that is nowhere shown.
///
/// **Threading:** UI thread only; waits there, 10 s at most, for a campaign's pictures.
class PopupPicture {
 public:
  PopupPicture();

  /// What the user sees of `request` over a window of that look.
  QImage of(const std::shared_ptr<const PopupRequest>& request, const Look& look);

  /// Popup options for the look; the pictures come from one loader.
  [[nodiscard]] PopUpOptions options(const Look& look) const;
  /// Gives a host's window its size, its colours and its direction.
  static void dress(QWidget& host, const Look& look);

 private:
  void awaitPictures(const PopupRequest& request);

  const std::shared_ptr<ImageLoader> loader_;
};

}  // namespace kifo::tool
