#pragma once

#include <QObject>
#include <QPointer>
#include <deque>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupQueue.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "platform/qt/UiLink.h"

class QWindow;

namespace kifo {

/// The popups over one window of the host: one is shown, the others wait in order. A window that
/// holds widgets and a scene shows one popup, whichever toolkit draws it.
///
/// **Threading:** UI thread only.
class KIFO_SHARED WindowPopups : public QObject {
  Q_OBJECT

 public:
  using Request = PopupQueue::Request;

  /// `tag`, a literal, starts the console lines that say why a popup is not shown.
  WindowPopups(std::string_view tag, PopUpOptions options);
  ~WindowPopups() override;

  /// Shows the popup at once, or when those before it have closed.
  void enqueue(const Request& request);
  /// What still waits; the queue forgets it.
  std::deque<Request> takeWaiting();

 protected:
  /// Looks whether the next one can be shown now.
  void showNext();

  /// The window as the window system knows it; null when it is gone or not made yet.
  [[nodiscard]] virtual QWindow* systemWindow() const = 0;
  /// Whether the window is there and a popup in it would be seen.
  [[nodiscard]] virtual bool isReady() const = 0;
  /// Shows the popup and returns it; the next one follows once it is destroyed. `options` are the
  /// host's, with reduced motion where the desktop asks for it.
  virtual QObject* show(const Request& request, PopUpOptions options) = 0;

 private:
  [[nodiscard]] bool canShow() const;

  const std::string_view tag_;
  const PopUpOptions options_;
  QPointer<QObject> current_;
  /// Shared with the call that asks the host's gate, which may destroy this.
  const std::shared_ptr<PopupQueue> queue_;
};

/// Takes the popups on the UI thread: finds the window of each one's screen and puts it into that
/// window's queue.
///
/// **Threading:** UI thread only, but through `link`. **Ownership:** belongs to the application.
class KIFO_SHARED PopupRouter : public QObject {
  Q_OBJECT

 public:
  explicit PopupRouter(QObject* parent);
  ~PopupRouter() override;

  [[nodiscard]] std::shared_ptr<UiLink<PopupRouter>> link() const { return link_; }

  virtual void accept(const std::shared_ptr<const PopupRequest>& request) = 0;

 protected:
  [[nodiscard]] virtual std::unique_ptr<WindowPopups> makeQueue(QObject* window) = 0;
  WindowPopups& queueOf(QObject* window);

 private:
  void windowGone(QObject* window);

  const std::shared_ptr<UiLink<PopupRouter>> link_;
  std::unordered_map<QObject*, std::unique_ptr<WindowPopups>> queues_;
};

}  // namespace kifo
