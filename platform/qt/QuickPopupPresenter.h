#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/ports/PopupPresenter.h"

namespace kifo {

class PopupRouter;
template <class Target>
class UiLink;

/// Shows popups as items of the host's Qt Quick scene, above all that the scene shows: in the
/// window of a `QuickScreenProvider` screen, in that of a `QtWindowProvider` screen when it is a
/// `QQuickWindow`, and otherwise in the active `QQuickWindow`, or the only one that is seen. No
/// window is ever opened. One popup at a time in each window, the next when the first has closed.
///
///     QGuiApplication application(argc, argv);
///     kifo::Platform::install(kifo::withQuick(kifo::Platform::makeDefault()));
///     kifo::Kifo::initialize(configuration);
///
/// **Threading:** made on the UI thread once the QGuiApplication exists; everything else from any
/// thread.
/// **Ownership:** popups belong to their windows and go with them. When the presenter is destroyed,
/// popups that still wait are dropped; one that is shown stays until the user has answered it.
/// **Errors:** a popup that cannot be shown is a console line and, to the inspector, the decision
/// "popup". One for a window that is not seen yet waits until it is.
class KIFO_EXPORT QuickPopupPresenter final : public PopupPresenter {
 public:
  /// `widgets` shows the popups of screens that are in no scene, where the host has widgets as
  /// well. Over a window that holds both, one popup shows at a time.
  explicit QuickPopupPresenter(PopUpOptions options = {},
                               std::shared_ptr<PopupPresenter> widgets = nullptr);
  ~QuickPopupPresenter() override;
  QuickPopupPresenter(const QuickPopupPresenter&) = delete;
  QuickPopupPresenter& operator=(const QuickPopupPresenter&) = delete;

  void present(std::shared_ptr<const PopupRequest> request) override;

 private:
  std::shared_ptr<UiLink<PopupRouter>> link_;  ///< Null without a QGuiApplication.
};

/// `platform` with the services that Qt gives an application with Qt Quick scenes: popups, the
/// clipboard and, where the library was built with Qt Positioning, the position. A host with scenes
/// and widgets calls `withQuick(withQt(platform))`: what is no scene's popup goes to the presenter
/// that `platform` has.
///
/// **Threading:** UI thread, once the QGuiApplication exists.
KIFO_EXPORT Platform withQuick(Platform platform, PopUpOptions options = {});

}  // namespace kifo
