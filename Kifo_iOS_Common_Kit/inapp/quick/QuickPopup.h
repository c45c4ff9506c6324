#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"

namespace kifo {

/// One campaign over a scene.
///
/// **Threading:** UI thread only.
class QuickPopup : public QuickOverlay {
  Q_OBJECT

 public:
  QuickPopup(std::shared_ptr<const PopupRequest> request, PopUpOptions options);

  void present(QQuickWindow& window);

 private:
  std::shared_ptr<const PopupRequest> request_;
  PopUpOptions options_;
};

}  // namespace kifo
