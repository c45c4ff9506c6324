#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"

namespace kifo {

/// Gives a campaign to the popup presenter. Before it is shown there, checks it for its kind,
/// spends one of its shows and reports the opening. A refusal is a console line and nothing else:
/// no event, no callback, no show spent.
///
/// **Threading:** main queue only; the handler runs on the UI thread.
class PopupManager {
 public:
  static constexpr std::string_view LOG_TAG = "Kifo PopupManager:";  ///< Starts its console lines.

  using Handler = std::function<void(std::shared_ptr<AppCommunicationItemButton>)>;

  /// `reporter` takes the opening and the answers.
  explicit PopupManager(std::shared_ptr<InAppReporter> reporter);

  void showNotificationPopUpWindow(std::shared_ptr<ViewController> controller,
                                   std::optional<std::string> pageName,
                                   std::shared_ptr<AppCommunicationItem> item, Handler handler);
  void showNotificationSurveyPopUpRadioGroupWindow(std::shared_ptr<ViewController> controller,
                                                   std::optional<std::string> pageName,
                                                   std::shared_ptr<AppCommunicationItem> item,
                                                   Handler handler);
  void showNotificationEmojiPopUpWindow(std::shared_ptr<ViewController> controller,
                                        std::optional<std::string> pageName,
                                        std::shared_ptr<AppCommunicationItem> item,
                                        Handler handler);
  void showNotificationScorePopUpWindow(std::shared_ptr<ViewController> controller,
                                        std::optional<std::string> pageName,
                                        std::shared_ptr<AppCommunicationItem> item,
                                        Handler handler);
  void showNotificationOpenEndedPopUpWindow(std::shared_ptr<ViewController> controller,
                                            std::optional<std::string> pageName,
                                            std::shared_ptr<AppCommunicationItem> item,
                                            Handler handler);

 private:
  std::shared_ptr<InAppReporter> reporter_;
};

}  // namespace kifo
