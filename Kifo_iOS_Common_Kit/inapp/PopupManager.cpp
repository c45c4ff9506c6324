#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"

#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"

namespace kifo {
namespace {

using ButtonPointer = std::shared_ptr<AppCommunicationItemButton>;

void print(std::string_view message) {
  Console::print(PopupManager::LOG_TAG, message);
}

/// A campaign with what it was triggered with.
struct Trigger {
  std::shared_ptr<ViewController> controller;
  std::optional<std::string> pageName;
  std::shared_ptr<AppCommunicationItem> item;
  PopupManager::Handler handler;
};

template <class Record>
std::string description(const std::shared_ptr<Record>& record) {
  return record ? encode(*record) : "none";
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
/// An absent colour is white. Kept for compatibility.
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

/// Stands in for a screen that was closed under its popup, so that the answer keeps its page's
/// name.
class ClosedScreen final : public ViewController {
 public:
  explicit ClosedScreen(std::string name) : name_(std::move(name)) {}
  [[nodiscard]] std::string className() const override { return name_; }

 private:
  const std::string name_;
};

/// Reports one campaign's opening and answers. The screen is held weakly: a popup must not keep a
/// closed one alive.
class Report final : public InAppReporter {
 public:
  Report(std::shared_ptr<InAppReporter> reporter, const Trigger& trigger)
      : reporter_(std::move(reporter)),
        item_(trigger.item),
        controller_(trigger.controller),
        pageName_(trigger.pageName) {
    if (!trigger.controller) return;
    closed_ = std::make_shared<ClosedScreen>(trigger.controller->className());
  }

  void opened() { opened(item_, controller_.lock(), pageName_); }
  void answered(InAppAnswer answer) {
    answered(item_, std::move(answer), controller_.lock(), pageName_);
  }

  void opened(std::shared_ptr<AppCommunicationItem> item,
              std::shared_ptr<ViewController> controller,
              std::optional<std::string> pageName) override {
    reporter_->opened(std::move(item), controller ? controller : closed_, std::move(pageName));
  }
  void answered(std::shared_ptr<AppCommunicationItem> item, InAppAnswer answer,
                std::shared_ptr<ViewController> controller,
                std::optional<std::string> pageName) override {
    reporter_->answered(std::move(item), std::move(answer), controller ? controller : closed_,
                        std::move(pageName));
  }

 private:
  const std::shared_ptr<InAppReporter> reporter_;
  const std::shared_ptr<AppCommunicationItem> item_;
  const std::weak_ptr<ViewController> controller_;
  const std::optional<std::string> pageName_;
  std::shared_ptr<ViewController> closed_;  ///< Null when there was no screen.
};

using ReportPointer = std::shared_ptr<Report>;

void occurred(const ButtonPointer& button) {
  print("action occurred: " + description(button));
}

PopupRequest::ButtonCallback forwardingTo(PopupManager::Handler handler) {
  return [handler = std::move(handler)](ButtonPointer button) {
    callHost(PopupManager::LOG_TAG, handler, std::move(button));
  };
}

/// The callbacks of a plain popup: its buttons, and its body, are answers of their own.
void installPopupCallbacks(PopupRequest& request, const ReportPointer& report,
                           const PopupManager::Handler& handler) {
  const auto toHost = forwardingTo(handler);
  request.actionItem = [report, toHost](ButtonPointer button) {
    occurred(button);
    toHost(button);
    report->answered({.button = std::move(button)});
  };
  request.actionBodyItem = [report, toHost](ButtonPointer button) {
    occurred(button);
    toHost(button);
    report->answered({.body = button ? button->action : nullptr});
  };
}

void installChoiceCallbacks(PopupRequest& request, const ReportPointer& report,
                            const PopupManager::Handler& handler) {
  request.actionItem = [report](ButtonPointer button) {
    occurred(button);
    report->answered({.choice = std::move(button)});
  };
  request.submitButtonItem = forwardingTo(handler);
}

void installOpenEndedCallbacks(PopupRequest& request, const ReportPointer& report,
                               const PopupManager::Handler& handler) {
  request.actionItem = [report](const ButtonPointer&) {
    print("action occurred");
    report->answered({});
  };
  request.submitButtonItem = forwardingTo(handler);
}

// Kinds ------------------------------------------------------------------------------------------

using Options = std::optional<rules::Buttons>;

/// What one kind of popup has that others have not.
struct Kind {
  std::string_view operation;
  void (*installCallbacks)(PopupRequest&, const ReportPointer&, const PopupManager::Handler&);
  /// Its options and their rule; null when it has none.
  Options (*options)(const AppCommunicationItem&) = nullptr;
  const rules::ListRule* rule = nullptr;
  bool isPlain = false;   ///< Its options are buttons, and it has no submit button.
  bool hasRange = false;  ///< It is a score.
};

Options buttonsOf(const AppCommunicationItem& item) {
  return item.buttons;
}

Options choicesOf(const AppCommunicationItem& item) {
  return item.choices;
}

constexpr Kind kPopup{.operation = "showNotificationPopUpWindow",
                      .installCallbacks = installPopupCallbacks,
                      .options = buttonsOf,
                      .rule = &rules::kPopupButtons,
                      .isPlain = true};
constexpr Kind kSurvey{.operation = "showNotificationSurveyPopUpRadioGroupWindow",
                       .installCallbacks = installChoiceCallbacks,
                       .options = choicesOf,
                       .rule = &rules::kSurveyChoices};
constexpr Kind kEmoji{.operation = "showNotificationEmojiPopUpWindow",
                      .installCallbacks = installChoiceCallbacks,
                      .options = rules::offeredEmojis,
                      .rule = &rules::kEmojis};
constexpr Kind kScore{.operation = "showNotificationScorePopUpWindow",
                      .installCallbacks = installChoiceCallbacks,
                      .hasRange = true};
constexpr Kind kOpenEnded{.operation = "showNotificationOpenEndedPopUpWindow",
                          .installCallbacks = installOpenEndedCallbacks};

PopupPreferences preferencesOf(const Kind& kind, const Trigger& trigger) {
  const AppCommunicationItem& item = *trigger.item;
  PopupPreferences preferences{.type = item.type,
                               .titleColor = colorOf(item.header),
                               .title = textOf(item.header),
                               .detailTextColor = colorOf(item.text),
                               .detailText = textOf(item.text),
                               .questionText = textOf(item.question),
                               .questionColor = colorOf(item.question),
                               .backgroundColor = colorOrWhite(item.bgColor),
                               .buttons = {},
                               .image = item.image,
                               .submitButton = kind.isPlain ? nullptr : item.submitButton,
                               .choices = {},
                               .appCommunicationItem = trigger.item,
                               .images = imageUrls(item),
                               .controller = trigger.controller,
                               .pageName = trigger.pageName};
  if (!kind.rule) return preferences;
  auto options = rules::firstOf(*kind.rule, kind.options(item));
  if (kind.isPlain) {
    preferences.buttons = std::move(options);
  } else {
    preferences.buttons = item.buttons.value_or(rules::Buttons());
    preferences.choices = std::move(options);
  }
  return preferences;
}

/// What a presenter asks and does before it shows a popup, on its UI thread.
struct Opening {
  const Kind& kind;
  const std::shared_ptr<AppCommunicationItem> item;
  const ReportPointer report;
  const std::weak_ptr<Runtime> runtime;
  std::weak_ptr<const PopupRequest> request;
  bool isAllowed = false;

  /// The checks that may come out otherwise than when the popup became due, and the host's gate.
  bool mayShow() {
    isAllowed = false;
    const auto owner = runtime.lock();
    if (!owner || !rules::hasConsent(*owner, *item)) return false;
    if (rules::isExpired(*item)) {
      count(Counter::popupsRefusedExpired);
      return false;
    }
    if (!rules::showsLeft(*item)) return false;
    if (kind.rule && !rules::accepts(*kind.rule, kind.options(*item), *item)) return false;
    const auto self = request.lock();
    isAllowed = self && owner->popupGate->allows(self);
    return isAllowed;
  }

  /// The spending and the report.
  bool open() {
    if (!isAllowed && !mayShow()) return false;
    isAllowed = false;
    const auto owner = runtime.lock();
    if (!owner || !rules::hasConsent(*owner, *item)) return false;
    // Read again: another popup of the campaign may have shown while the host decided.
    const auto left = rules::showsLeft(*item);
    if (!left) return false;
    if (kind.rule) rules::sayCut(*kind.rule, kind.options(*item), *item);
    rules::spendShow(*item, *left);
    if (kind.isPlain) print("appCommunicationItem: " + description(item));
    report->opened();
    count(Counter::popupsShown);
    rules::inspect(*item, "shown", "");
    return true;
  }
};

void present(const Kind& kind, const std::shared_ptr<InAppReporter>& reporter,
             const Trigger& trigger) {
  print(kind.operation);
  // Only a plain popup is dropped without a line. Kept for compatibility.
  if (!rules::isIdentified(trigger.item, /*silently=*/kind.isPlain)) return;
  // The range is checked before the budget: a campaign with a wrong one never touches its budget.
  if (kind.hasRange && !rules::hasScoreRange(*trigger.item)) return;
  const auto runtime = Runtime::current();
  const auto report = std::make_shared<Report>(reporter, trigger);
  const auto request = std::make_shared<PopupRequest>();
  const auto opening =
      std::make_shared<Opening>(Opening{kind, trigger.item, report, runtime, request});
  request->preferences = preferencesOf(kind, trigger);
  request->reporter = report;
  request->order = runtime->popupGate->nextOrder();
  request->mayShow = [opening] { return opening->mayShow(); };
  request->open = [opening] { return opening->open(); };
  kind.installCallbacks(*request, report, trigger.handler);
  runtime->popupGate->present(request);
}

}  // namespace

PopupManager::PopupManager(std::shared_ptr<InAppReporter> reporter)
    : reporter_(std::move(reporter)) {}

void PopupManager::showNotificationPopUpWindow(std::shared_ptr<ViewController> controller,
                                               std::optional<std::string> pageName,
                                               std::shared_ptr<AppCommunicationItem> item,
                                               Handler handler) {
  present(kPopup, reporter_,
          {std::move(controller), std::move(pageName), std::move(item), std::move(handler)});
}

void PopupManager::showNotificationSurveyPopUpRadioGroupWindow(
    std::shared_ptr<ViewController> controller, std::optional<std::string> pageName,
    std::shared_ptr<AppCommunicationItem> item, Handler handler) {
  present(kSurvey, reporter_,
          {std::move(controller), std::move(pageName), std::move(item), std::move(handler)});
}

void PopupManager::showNotificationEmojiPopUpWindow(std::shared_ptr<ViewController> controller,
                                                    std::optional<std::string> pageName,
                                                    std::shared_ptr<AppCommunicationItem> item,
                                                    Handler handler) {
  present(kEmoji, reporter_,
          {std::move(controller), std::move(pageName), std::move(item), std::move(handler)});
}

void PopupManager::showNotificationScorePopUpWindow(std::shared_ptr<ViewController> controller,
                                                    std::optional<std::string> pageName,
                                                    std::shared_ptr<AppCommunicationItem> item,
                                                    Handler handler) {
  present(kScore, reporter_,
          {std::move(controller), std::move(pageName), std::move(item), std::move(handler)});
}

void PopupManager::showNotificationOpenEndedPopUpWindow(std::shared_ptr<ViewController> controller,
                                                        std::optional<std::string> pageName,
                                                        std::shared_ptr<AppCommunicationItem> item,
                                                        Handler handler) {
  present(kOpenEnded, reporter_,
          {std::move(controller), std::move(pageName), std::move(item), std::move(handler)});
}

}  // namespace kifo
