#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <deque>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupQueue.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"

namespace kifo {

class PopUpWindow;

/// The popups over one window of the host: one is shown, the others wait in order.
///
/// **Threading:** UI thread only.
class QtPopupQueue : public QObject {
  Q_OBJECT

 public:
  using Request = PopupQueue::Request;

  /// Popups are laid inside the widget's window.
  QtPopupQueue(QWidget* window, const PopUpOptions& options);
  /// Popups are windows of their own, which follow `window`.
  QtPopupQueue(QWindow* window, const PopUpOptions& options);

  /// Shows the popup, at once or when those before it have closed.
  void enqueue(const Request& request);

  /// What still waits; the queue forgets it.
  std::deque<Request> takeWaiting();

 private:
  [[nodiscard]] bool canShow() const;
  void showNext();
  void show(const Request& request);

  const PopUpOptions options_;
  QPointer<QWidget> widget_;
  QPointer<QWindow> window_;
  QPointer<QWidget> current_;
  /// Shared with the call that asks the host's gate, which may destroy this.
  const std::shared_ptr<PopupQueue> queue_ = std::make_shared<PopupQueue>("QtPopupPresenter");
};

}  // namespace kifo
