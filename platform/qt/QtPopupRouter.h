#pragma once

#include <QObject>
#include <memory>
#include <string>
#include <unordered_map>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "platform/qt/UiLink.h"

namespace kifo {

class QtPopupQueue;

/// Takes the popups on the UI thread: finds the window of each one's screen and puts it into that
/// window's queue.
///
/// **Threading:** UI thread only, but for `notShown` and through `link`. **Ownership:** belongs to
/// the application.
class QtPopupRouter : public QObject {
  Q_OBJECT

 public:
  QtPopupRouter(PopUpOptions options, QObject* parent);
  ~QtPopupRouter() override;

  [[nodiscard]] std::shared_ptr<UiLink<QtPopupRouter>> link() const { return link_; }

  void accept(const std::shared_ptr<const PopupRequest>& request);

  /// Says why a popup is not shown. From any thread.
  static void notShown(const PopupRequest& request, const std::string& reason);

 private:
  QtPopupQueue* queueOf(QObject* window);
  void windowGone(QObject* window);

  const PopUpOptions options_;
  const std::shared_ptr<UiLink<QtPopupRouter>> link_;
  std::unordered_map<QObject*, std::unique_ptr<QtPopupQueue>> queues_;
};

}  // namespace kifo
