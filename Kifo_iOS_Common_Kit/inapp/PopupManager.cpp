#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"

#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

using ButtonPointer = std::shared_ptr<AppCommunicationItemButton>;

void print(std::string_view message) {
  Console::print(logTag("PopupManager"), message);
}

/// What differs between one kind's preferences and another's.
struct Contents {
  rules::Buttons buttons = {};
  rules::Buttons choices = {};
  ButtonPointer submitButton = nullptr;
};

/// A campaign with what it was triggered with.
struct Trigger {
  std::shared_ptr<ViewController> controller;
  std::optional<std::string> pageName;
  std::shared_ptr<AppCommunicationItem> item;
};

template <class Record>
std::string description(const std::shared_ptr<Record>& record) {
  if (!record) return "none";
  return encode(*record).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::vector<std::string> imageUrls(const AppCommunicationItem& item) {
  std::vector<std::string> urls;
  if (!item.images) return urls;
  for (const auto& image : *item.images) {
    if (image && image->url) urls.push_back(*image->url);
  }
  return urls;
}

/// A colour that the campaign leaves out is white; one that it writes wrongly is black.
Color colorOrWhite(const std::optional<std::string>& hex) {
  return hex ? colorFromHex(*hex) : Color::white();
}

template <class Record>
Color colorOf(const std::shared_ptr<Record>& record) {
  return record ? colorOrWhite(record->color) : Color::white();
}

template <class Record>
std::optional<std::string> textOf(const std::shared_ptr<Record>& record) {
  return record ? record->text : std::nullopt;
}

PopupPreferences preferencesOf(const Trigger& trigger, Contents contents) {
  const AppCommunicationItem& item = *trigger.item;
  return {.type = item.type,
          .titleColor = colorOf(item.header),
          .title = textOf(item.header),
          .detailTextColor = colorOf(item.text),
          .detailText = textOf(item.text),
          .questionText = textOf(item.question),
          .questionColor = colorOf(item.question),
          .backgroundColor = colorOrWhite(item.bgColor),
          .buttons = std::move(contents.buttons),
          .image = item.image,
          .submitButton = std::move(contents.submitButton),
          .choices = std::move(contents.choices),
          .appCommunicationItem = trigger.item,
          .images = imageUrls(item),
          .controller = trigger.controller,
          .pageName = trigger.pageName};
}

/// Reports one campaign's opening and answers for as long as a callback of its window lives. The
/// screen is held weakly: a popup must not keep a closed screen alive.
class Report {
 public:
  Report(std::shared_ptr<InAppReporter> reporter, const Trigger& trigger)
      : reporter_(std::move(reporter)),
        item_(trigger.item),
        controller_(trigger.controller),
        pageName_(trigger.pageName) {}

  void opened() const { reporter_->opened(item_, controller_.lock(), pageName_); }
  void answered(InAppAnswer answer) const {
    reporter_->answered(item_, std::move(answer), controller_.lock(), pageName_);
  }

 private:
  std::shared_ptr<InAppReporter> reporter_;
  std::shared_ptr<AppCommunicationItem> item_;
  std::weak_ptr<ViewController> controller_;
  std::optional<std::string> pageName_;
};

void occurred(const ButtonPointer& button) {
  print("action occurred: " + description(button));
}

PopupRequest::ButtonCallback forwardingTo(PopupManager::Handler handler) {
  return [handler = std::move(handler)](ButtonPointer button) {
    callHost(logTag("PopupManager"), handler, std::move(button));
  };
}

/// The callbacks of a plain popup: its buttons, and its body, are answers of their own.
void installPopupCallbacks(PopupRequest& request, const Report& report,
                           const PopupManager::Handler& handler) {
  const auto toHost = forwardingTo(handler);
  request.actionItem = [report, toHost](ButtonPointer button) {
    occurred(button);
    toHost(button);
    report.answered({.button = std::move(button)});
  };
  request.actionBodyItem = [report, toHost](ButtonPointer button) {
    occurred(button);
    toHost(button);
    report.answered({.body = button ? button->action : nullptr});
  };
}

void installChoiceCallbacks(PopupRequest& request, const Report& report,
                            const PopupManager::Handler& handler) {
  request.actionItem = [report](ButtonPointer button) {
    occurred(button);
    report.answered({.choice = std::move(button)});
  };
  request.submitButtonItem = forwardingTo(handler);
}

void installOpenEndedCallbacks(PopupRequest& request, const Report& report,
                               const PopupManager::Handler& handler) {
  request.actionItem = [report](const ButtonPointer&) {
    print("action occurred");
    report.answered({});
  };
  request.submitButtonItem = forwardingTo(handler);
}

using InstallCallbacks = void (*)(PopupRequest&, const Report&, const PopupManager::Handler&);

void present(const std::shared_ptr<InAppReporter>& reporter, const Trigger& trigger,
             Contents contents, const PopupManager::Handler& handler, InstallCallbacks install) {
  const Report report(reporter, trigger);
  const auto request = std::make_shared<PopupRequest>();
  request->preferences = preferencesOf(trigger, std::move(contents));
  request->reporter = reporter;
  install(*request, report, handler);
  Platform::current()->popups->present(request);
  report.opened();
  rules::inspect(*trigger.item, "shown", "");
}

/// Surveys and emojis: a list of options and a submit button.
void showOptions(const std::shared_ptr<InAppReporter>& reporter, const Trigger& trigger,
                 const PopupManager::Handler& handler, const rules::ListRule& rule,
                 std::optional<rules::Buttons> options) {
  const AppCommunicationItem& item = *trigger.item;
  const auto left = rules::showsLeft(item);
  if (!left) return;
  auto shown = rules::applied(rule, std::move(options), item);
  if (!shown) return;
  rules::spendShow(item, *left);
  present(reporter, trigger,
          {.buttons = item.buttons.value_or(rules::Buttons()),
           .choices = *std::move(shown),
           .submitButton = item.submitButton},
          handler, installChoiceCallbacks);
}

/// Scores and open-ended questions: a submit button alone.
void showQuestion(const std::shared_ptr<InAppReporter>& reporter, const Trigger& trigger,
                  const PopupManager::Handler& handler, InstallCallbacks install) {
  const auto left = rules::showsLeft(*trigger.item);
  if (!left) return;
  rules::spendShow(*trigger.item, *left);
  present(reporter, trigger, {.submitButton = trigger.item->submitButton}, handler, install);
}

}  // namespace

PopupManager::PopupManager(std::shared_ptr<InAppReporter> reporter)
    : reporter_(std::move(reporter)) {}

void PopupManager::showNotificationPopUpWindow(std::shared_ptr<ViewController> controller,
                                               std::optional<std::string> pageName,
                                               std::shared_ptr<AppCommunicationItem> item,
                                               Handler handler) {
  print("showNotificationPopUpWindow");
  if (!rules::isIdentified(item, /*silently=*/true)) return;
  const auto left = rules::showsLeft(*item);
  if (!left) return;
  auto buttons = rules::applied(rules::kPopupButtons, item->buttons, *item);
  if (!buttons) return;
  rules::spendShow(*item, *left);
  print("appCommunicationItem: " + description(item));
  present(reporter_, {std::move(controller), std::move(pageName), std::move(item)},
          {.buttons = *std::move(buttons)}, handler, installPopupCallbacks);
}

void PopupManager::showNotificationSurveyPopUpRadioGroupWindow(
    std::shared_ptr<ViewController> controller, std::optional<std::string> pageName,
    std::shared_ptr<AppCommunicationItem> item, Handler handler) {
  print("showNotificationSurveyPopUpRadioGroupWindow");
  if (!rules::isIdentified(item)) return;
  showOptions(reporter_, {std::move(controller), std::move(pageName), item}, handler,
              rules::kSurveyChoices, item->choices);
}

void PopupManager::showNotificationEmojiPopUpWindow(std::shared_ptr<ViewController> controller,
                                                    std::optional<std::string> pageName,
                                                    std::shared_ptr<AppCommunicationItem> item,
                                                    Handler handler) {
  print("showNotificationEmojiPopUpWindow");
  if (!rules::isIdentified(item)) return;
  showOptions(reporter_, {std::move(controller), std::move(pageName), item}, handler,
              rules::kEmojis, rules::offeredEmojis(*item));
}

void PopupManager::showNotificationScorePopUpWindow(std::shared_ptr<ViewController> controller,
                                                    std::optional<std::string> pageName,
                                                    std::shared_ptr<AppCommunicationItem> item,
                                                    Handler handler) {
  print("showNotificationScorePopUpWindow");
  // The range is checked before the budget: a campaign with a wrong one never touches its budget.
  if (!rules::isIdentified(item) || !rules::hasScoreRange(*item)) return;
  showQuestion(reporter_, {std::move(controller), std::move(pageName), std::move(item)}, handler,
               installChoiceCallbacks);
}

void PopupManager::showNotificationOpenEndedPopUpWindow(std::shared_ptr<ViewController> controller,
                                                        std::optional<std::string> pageName,
                                                        std::shared_ptr<AppCommunicationItem> item,
                                                        Handler handler) {
  print("showNotificationOpenEndedPopUpWindow");
  if (!rules::isIdentified(item)) return;
  showQuestion(reporter_, {std::move(controller), std::move(pageName), std::move(item)}, handler,
               installOpenEndedCallbacks);
}

}  // namespace kifo
