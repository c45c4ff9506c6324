#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
namespace kifo {
PopupManager::PopupManager(std::shared_ptr<InAppReporter> reporter) : reporter_(std::move(reporter)) {}
#define S(n) void PopupManager::n(std::shared_ptr<ViewController>, std::optional<std::string>, std::shared_ptr<AppCommunicationItem>, Handler) {}
S(showNotificationPopUpWindow) S(showNotificationSurveyPopUpRadioGroupWindow) S(showNotificationEmojiPopUpWindow) S(showNotificationScorePopUpWindow) S(showNotificationOpenEndedPopUpWindow)
}
