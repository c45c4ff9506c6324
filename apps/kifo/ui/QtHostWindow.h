#pragma once

#include <QObject>
#include <QPointer>
#include <QStackedWidget>
#include <QWidget>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "apps/kifo/host/HostWindow.h"
#include "platform/qt/QtPopupPresenter.h"

namespace kifo::tool {

/// Hands popups on to the real presenter, and knows which of them are still somewhere.
///
/// **Threading:** thread-safe.
class WatchedPresenter final : public PopupPresenter {
 public:
  WatchedPresenter();

  void present(std::shared_ptr<const PopupRequest> request) override;

  /// Popups that wait or are shown.
  [[nodiscard]] std::size_t alive();

 private:
  QtPopupPresenter presenter_;
  std::mutex mutex_;
  std::vector<std::weak_ptr<const PopupRequest>> requests_;  // guarded by mutex_
};

/// The window with real widgets: its pages are the screens, as on a phone.
///
/// **Threading:** made on the UI thread; the operations of `HostWindow` on any other thread.
class QtHostWindow final : public QObject, public HostWindow {
  Q_OBJECT

 public:
  explicit QtHostWindow(std::shared_ptr<Output> output);

  [[nodiscard]] std::shared_ptr<PopupPresenter> presenter() const override { return presenter_; }
  [[nodiscard]] std::shared_ptr<KifoViewController> makeScreen(const std::string& name) override;
  void appear(KifoViewController& screen) override;
  void disappear(KifoViewController& screen) override;
  void perform(const UserAction& action) override;
  [[nodiscard]] bool isSettled() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void customEvent(QEvent* event) override;

 private:
  /// Runs `task` on the UI thread and waits for it; what it throws is thrown here.
  void onUiThread(std::function<void()> task);

  void performOn(PopUpWindow& popup, const UserAction& action);
  void shown(PopUpWindow& popup);
  PopUpWindow* current() const;

  const std::shared_ptr<Output> output_;
  const std::shared_ptr<WatchedPresenter> presenter_;
  QWidget window_;
  QStackedWidget pages_;
  std::vector<QPointer<PopUpWindow>> popups_;  ///< Those on the screen, oldest first.

  std::mutex mutex_;
  std::deque<std::packaged_task<void()>>
      tasks_;  ///< Guarded by mutex_: each has an event under way.
};

}  // namespace kifo::tool
