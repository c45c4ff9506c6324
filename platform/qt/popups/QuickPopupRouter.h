#pragma once

#include <QPointer>
#include <QQuickWindow>
#include <memory>

#include "Kifo_iOS_Common_Kit/ports/PopupPresenter.h"
#include "platform/qt/popups/PopupRouter.h"

namespace kifo {

/// The popups in one scene. They wait while the scene is not seen: before its first exposure and
/// while it is hidden or minimised.
///
/// **Threading:** UI thread only.
class QuickPopupQueue : public WindowPopups {
  Q_OBJECT

 public:
  static constexpr std::string_view LOG_TAG = "Kifo QuickPopupPresenter:";

  QuickPopupQueue(QQuickWindow* scene, const PopUpOptions& options);

 protected:
  [[nodiscard]] QWindow* systemWindow() const override;
  [[nodiscard]] bool isReady() const override;
  QObject* show(const Request& request, PopUpOptions options) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPointer<QQuickWindow> scene_;
  QPointer<QWindow> watched_;  ///< Whose exposure and visibility are followed.
};

/// The popups of hosts with Qt Quick scenes. Popups for other screens go to `widgets`.
///
/// **Threading:** UI thread only. **Ownership:** belongs to the application.
class QuickPopupRouter : public PopupRouter {
  Q_OBJECT

 public:
  /// `widgets`: null where the host has no widgets.
  QuickPopupRouter(PopUpOptions options, std::shared_ptr<PopupPresenter> widgets, QObject* parent);

  void accept(const std::shared_ptr<const PopupRequest>& request) override;

 protected:
  [[nodiscard]] std::unique_ptr<WindowPopups> makeQueue(QObject* window) override;

 private:
  const PopUpOptions options_;
  const std::shared_ptr<PopupPresenter> widgets_;
};

}  // namespace kifo
