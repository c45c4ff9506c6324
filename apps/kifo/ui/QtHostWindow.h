#pragma once

#include <QObject>
#include <QPointer>
#include <QSize>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "apps/kifo/host/HostWindow.h"
#include "testing/ui/User.h"

namespace kifo::tool {

/// Gives popups to the real presenter, and counts those that are not closed.
///
/// **Threading:** thread-safe.
class WatchedPresenter final : public PopupPresenter {
 public:
  explicit WatchedPresenter(std::shared_ptr<PopupPresenter> presenter);

  void present(std::shared_ptr<const PopupRequest> request) override;

  /// Popups that wait or are shown.
  [[nodiscard]] std::size_t alive();

 private:
  const std::shared_ptr<PopupPresenter> presenter_;
  std::mutex mutex_;
  std::vector<std::weak_ptr<const PopupRequest>> requests_;  // guarded by mutex_
};

/// The window with real controls: its pages are the screens, as on a phone.
///
/// **Threading:** made on the UI thread; the operations of `HostWindow` on any other thread.
class QtHostWindow : public QObject, public HostWindow {
  Q_OBJECT

 public:
  [[nodiscard]] std::shared_ptr<PopupPresenter> presenter() const override { return presenter_; }
  [[nodiscard]] std::shared_ptr<KifoViewController> makeScreen(const std::string& name) override;
  void appear(KifoViewController& screen) override;
  void disappear(KifoViewController& screen) override;
  void perform(const UserAction& action) override;
  [[nodiscard]] bool isSettled() override;

 protected:
  /// A popup on the screen.
  struct Shown {
    QPointer<QObject> popup;
    const PopupState* state;  ///< As long as the popup is there.
    std::function<bool()> isDismissing;
  };

  static constexpr QSize kWindowSize{420, 800};

  QtHostWindow(std::shared_ptr<Output> output, std::shared_ptr<PopupPresenter> presenter);

  /// Popups without movement.
  [[nodiscard]] static PopUpOptions options();

  // What a toolkit does, on the UI thread.
  [[nodiscard]] virtual testing::User user() = 0;
  [[nodiscard]] virtual std::shared_ptr<KifoViewController> makePage(const std::string& name) = 0;
  virtual void showPage(KifoViewController& screen) = 0;

  /// A popup has come, perhaps not for the first time. Whether it is a new one.
  bool opened(const Shown& shown);
  void closed(const PopupState& state);
  void customEvent(QEvent* event) override;

 private:
  /// Runs `task` on the UI thread and waits for it; what it throws is thrown here.
  void onUiThread(std::function<void()> task);
  void performOn(const PopupState& state, const UserAction& action);

  const std::shared_ptr<Output> output_;
  const std::shared_ptr<WatchedPresenter> presenter_;
  std::vector<Shown> popups_;  ///< Those on the screen, oldest first.

  std::mutex mutex_;
  /// Guarded by mutex_: each has an event under way.
  std::deque<std::packaged_task<void()>> tasks_;
};

/// With Qt Widgets.
std::unique_ptr<QtHostWindow> makeWidgetHostWindow(std::shared_ptr<Output> output);
/// With a Qt Quick scene.
std::unique_ptr<QtHostWindow> makeQuickHostWindow(std::shared_ptr<Output> output);

}  // namespace kifo::tool
