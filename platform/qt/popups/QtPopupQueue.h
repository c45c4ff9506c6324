#pragma once

#include <QPointer>
#include <QWidget>
#include <QWindow>

#include "platform/qt/popups/PopupRouter.h"

namespace kifo {

/// The popups over one window of a host that uses Qt Widgets, or of one whose window popups lie
/// over as windows of their own.
///
/// **Threading:** UI thread only.
class QtPopupQueue : public WindowPopups {
  Q_OBJECT

 public:
  static constexpr std::string_view LOG_TAG = "Kifo QtPopupPresenter:";

  /// Popups are laid inside the widget's window.
  QtPopupQueue(QWidget* window, const PopUpOptions& options);
  /// Popups are windows of their own, which follow `window`.
  QtPopupQueue(QWindow* window, const PopUpOptions& options);

 protected:
  [[nodiscard]] QWindow* systemWindow() const override;
  [[nodiscard]] bool isReady() const override;
  QObject* show(const Request& request, PopUpOptions options) override;

 private:
  QPointer<QWidget> widget_;
  QPointer<QWindow> window_;
};

}  // namespace kifo
