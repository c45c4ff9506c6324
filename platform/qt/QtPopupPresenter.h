#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/ports/PopupPresenter.h"

namespace kifo {

class PopupRouter;
template <class Target>
class UiLink;

/// Shows popups over the host's Qt windows: inside the window of a `QtWidgetProvider` screen, and
/// in a translucent window of its own over that of a `QtWindowProvider` screen. One popup at a time
/// over each window, the next when the first has closed.
///
///     QApplication application(argc, argv);
///     kifo::Platform platform = kifo::Platform::makeDefault();
///     platform.popups = std::make_shared<kifo::QtPopupPresenter>();
///     kifo::Platform::install(std::move(platform));
///
/// **Threading:** made on the UI thread once the QApplication exists; everything else from any
/// thread.
/// **Ownership:** popups belong to their windows. When the presenter is destroyed, popups that
/// still wait are dropped; one that is shown stays until the user has answered it.
/// **Errors:** a popup that cannot be shown is a console line and, to the inspector, the decision
/// "popup". Over a `QtWindowProvider` screen none can be shown where the platform has one window
/// only, such as eglfs.
class KIFO_EXPORT QtPopupPresenter final : public PopupPresenter {
 public:
  explicit QtPopupPresenter(PopUpOptions options = {});
  ~QtPopupPresenter() override;
  QtPopupPresenter(const QtPopupPresenter&) = delete;
  QtPopupPresenter& operator=(const QtPopupPresenter&) = delete;

  void present(std::shared_ptr<const PopupRequest> request) override;

 private:
  std::shared_ptr<UiLink<PopupRouter>> link_;  ///< Null without a QApplication.
};

}  // namespace kifo
