#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopUpOptions.h"

namespace kifo {

class QtPopupStage;

/// Where popups arrive on the UI thread: finds the window of each one's screen and hands it to that
/// window's stage.
///
/// **Threading:** UI thread only, but for `notShown`. **Ownership:** belongs to the application.
class QtPopupDesk : public QObject {
  Q_OBJECT

 public:
  /// `forget` runs when the desk goes, so that nobody posts to it any more.
  QtPopupDesk(PopUpOptions options, std::function<void()> forget, QObject* parent);
  ~QtPopupDesk() override;

  void accept(const std::shared_ptr<const PopupRequest>& request);

  /// Says why a popup is not shown. From any thread.
  static void notShown(const PopupRequest& request, const std::string& reason);

 private:
  QtPopupStage* stageOf(QObject* window);
  void windowGone(QObject* window);

  const PopUpOptions options_;
  const std::function<void()> forget_;
  std::unordered_map<QObject*, std::unique_ptr<QtPopupStage>> stages_;
};

}  // namespace kifo
