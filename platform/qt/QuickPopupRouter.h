#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "platform/qt/UiLink.h"

namespace kifo {

class QuickPopup;

/// Takes the popups on the UI thread and shows them one after the other in the scene of each one's
/// screen.
///
/// **Threading:** UI thread only, but for `notShown` and through `link`. **Ownership:** belongs to
/// the application.
class QuickPopupRouter : public QObject {
  Q_OBJECT

 public:
  QuickPopupRouter(PopUpOptions options, QObject* parent);
  ~QuickPopupRouter() override;

  [[nodiscard]] std::shared_ptr<UiLink<QuickPopupRouter>> link() const { return link_; }

  void accept(const std::shared_ptr<const PopupRequest>& request);

  /// Says why a popup is not shown. From any thread.
  static void notShown(const PopupRequest& request, const std::string& reason);

 private:
  using Request = std::shared_ptr<const PopupRequest>;
  struct Queue {
    QPointer<QQuickWindow> window;
    QPointer<QObject> current;
    std::deque<Request> waiting;
  };

  void showNext(QQuickWindow* window);
  void windowGone(QObject* window);

  const PopUpOptions options_;
  const std::shared_ptr<UiLink<QuickPopupRouter>> link_;
  std::unordered_map<QObject*, Queue> queues_;
};

}  // namespace kifo
