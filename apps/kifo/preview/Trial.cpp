#include "apps/kifo/preview/Trial.h"

#include <ctime>

#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "testing/FakePopupPresenter.h"
#include "testing/FakeUserDefaults.h"
#include "testing/RecordingInspector.h"

namespace kifo::tool {
namespace {

using Item = AppCommunicationItem;

class NobodysReporter final : public InAppReporter {
 public:
  void opened(std::shared_ptr<Item>, std::shared_ptr<ViewController>,
              std::optional<std::string>) override {}
  void answered(std::shared_ptr<Item>, InAppAnswer, std::shared_ptr<ViewController>,
                std::optional<std::string>) override {}
};

void show(PopupType type, const std::shared_ptr<Item>& item) {
  PopupManager manager(std::make_shared<NobodysReporter>());
  switch (type) {
    case PopupType::popup:
      return manager.showNotificationPopUpWindow(nullptr, std::nullopt, item, {});
    case PopupType::survey:
      return manager.showNotificationSurveyPopUpRadioGroupWindow(nullptr, std::nullopt, item, {});
    case PopupType::emoji:
      return manager.showNotificationEmojiPopUpWindow(nullptr, std::nullopt, item, {});
    case PopupType::score:
      return manager.showNotificationScorePopUpWindow(nullptr, std::nullopt, item, {});
    case PopupType::openEnded:
      return manager.showNotificationOpenEndedPopUpWindow(nullptr, std::nullopt, item, {});
  }
}

std::string numberOr(const std::optional<std::int64_t>& number) {
  return number ? std::to_string(*number) : "missing";
}

std::string countWords(const char* what, std::size_t least, std::size_t count) {
  return std::string(what) + " are at least " + std::to_string(least) + ", and there " +
         (count == 1 ? "is " : "are ") + std::to_string(count);
}

std::size_t offered(const Item& item) {
  std::size_t count = 0;
  if (!item.emojiList) return count;
  for (const auto& emoji : *item.emojiList) count += emoji && emoji->show.value_or(false) ? 1 : 0;
  return count;
}

/// Why the SDK refused the campaign, in the order of its own checks.
std::string refusal(PopupType type, const Item& item) {
  if (!item.uuid) return "it has no \"uuid\", so nobody could count how often it was shown";
  if (!item.maxShowCount) return "it has no \"maxShowCount\"";
  if (*item.maxShowCount < 1 && type != PopupType::score) {
    return "its \"maxShowCount\" is " + std::to_string(*item.maxShowCount) +
           ", so it is never shown";
  }
  switch (type) {
    case PopupType::popup:
      return "it has no list of \"buttons\"; an empty one would do";
    case PopupType::survey:
      if (!item.choices) return "it has no \"choices\"";
      return countWords("the choices of a survey", 2, item.choices->size());
    case PopupType::emoji:
      if (!item.emojiList) return "it has no \"emojiList\"";
      return countWords("the emojis with \"show\": true", 2, offered(item));
    default:
      return "its scores go from " + numberOr(item.minScore) + " to " + numberOr(item.maxScore) +
             "; the lowest is at least 0 and below the highest, which is 1 to 100000";
  }
}

/// What the checks of the kinds say beyond yes and no.
std::vector<std::string> notesOf(const Item& item, const testing::RecordingInspector& inspector) {
  std::vector<std::string> notes;
  for (const auto& decision : inspector.ofKind("campaign")) {
    const std::vector<std::pair<std::string, std::string>>& all = decision.particulars;
    const auto is = [&](const char* key, const char* value) {
      return std::find(all.begin(), all.end(), std::pair<std::string, std::string>(key, value)) !=
             all.end();
    };
    if (is("outcome", "clamped"))
      notes.push_back("it offers more than is shown: " + all.back().second);
  }
  if (!item.triggeringEventName)
    notes.push_back("no event shows it: it has no \"triggeringEventName\"");
  return notes;
}

}  // namespace

Verdict tryCampaign(const std::shared_ptr<Item>& campaign) {
  const auto type = popupType(campaign->type.value_or(""));
  if (!type) {
    return {nullptr,
            campaign->type ? "its type \"" + *campaign->type +
                                 "\" is none of POPUP, SURVEY, EMOJI, SCORE and OPEN_ENDED"
                           : "it has no \"type\"",
            {}};
  }
  const auto presenter = std::make_shared<testing::FakePopupPresenter>();
  const auto inspector = std::make_shared<testing::RecordingInspector>();
  const auto before = Platform::current();
  Platform trial = *before;
  trial.popups = presenter;
  trial.inspector = inspector;
  trial.userDefaults = std::make_shared<testing::FakeUserDefaults>();
  Platform::install(std::move(trial));
  before->mainQueue->sync([&] { show(*type, campaign); });
  Platform::install(*before);

  const auto requests = presenter->take();
  if (requests.empty()) return {nullptr, refusal(*type, *campaign), {}};
  return {requests.front(), "", notesOf(*campaign, *inspector)};
}

}  // namespace kifo::tool
