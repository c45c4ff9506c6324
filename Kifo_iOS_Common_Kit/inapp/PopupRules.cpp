#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo::rules {
namespace {

/// Expiry dates below this are seconds since 1970, from it on milliseconds.
constexpr double kFirstMilliseconds = 1e11;

void print(std::string_view message) {
  Console::print(PopupManager::LOG_TAG, message);
}

void refuse(const AppCommunicationItem& item, Counter reason, std::string_view message) {
  count(reason);
  print(message);
  inspect(item, "refused", message);
}

/// Such as "buttons.count > 3 -> buttons count = 5".
std::string countMessage(const ListRule& rule, std::string_view sign, std::size_t bound,
                         std::size_t count) {
  const std::string word(rule.word);
  return (word + ".count ").append(sign) + " " + std::to_string(bound) + " -> " + word +
         " count = " + std::to_string(count);
}

}  // namespace

void remember(const AppCommunicationItem& item, std::string outcome) {
  const auto runtime = Runtime::existing();
  if (runtime && item.uuid) runtime->campaignOutcomes.set(*item.uuid, std::move(outcome));
}

void inspect(const AppCommunicationItem& item, std::string_view outcome, std::string_view reason) {
  std::string words(outcome);
  if (!reason.empty()) words.append(": ").append(reason);
  remember(item, std::move(words));
  KIFO_INSPECT("campaign", {{"uuid", item.uuid.value_or("")},
                            {"type", item.type.value_or("")},
                            {"outcome", std::string(outcome)},
                            {"reason", std::string(reason)}});
}

bool isIdentified(const std::shared_ptr<AppCommunicationItem>& item, bool silently) {
  if (item && item->uuid && item->maxShowCount) return true;
  constexpr std::string_view message = "uuid or maxShowCount couldn't be assigned";
  if (!silently) print(message);
  count(Counter::popupsRefusedUnidentified);
  inspect(item ? *item : AppCommunicationItem(), "refused", message);
  return false;
}

bool hasConsent(const Runtime& runtime, const AppCommunicationItem& item) {
  if (!runtime.consent.isWithheld()) return true;
  runtime.counters->add(Counter::popupsRefusedNoConsent);
  constexpr std::string_view message = "the user's consent was revoked";
  print(message);
  inspect(item, "refused", message);
  return false;
}

bool hasScoreRange(const AppCommunicationItem& item) {
  if (item.minScore && item.maxScore && *item.maxScore >= 1 && *item.minScore >= 0 &&
      *item.minScore < *item.maxScore && *item.maxScore <= kHighestScore) {
    return true;
  }
  constexpr std::string_view message = "Maximumscore or Minimumscore are not validation";
  Console::printBare(message);
  count(Counter::popupsRefusedScoreRange);
  inspect(item, "refused", message);
  return false;
}

bool hasExpired(const AppCommunicationItem& item) {
  if (!item.expireDate) return false;
  const double milliseconds =
      *item.expireDate < kFirstMilliseconds ? *item.expireDate * 1000.0 : *item.expireDate;
  return milliseconds < static_cast<double>(Platform::current()->clock->millisecondsSince1970());
}

bool isExpired(const AppCommunicationItem& item) {
  if (!hasExpired(item)) return false;
  inspect(item, "expired", "");
  return true;
}

/// A budget that is stored wins over a `maxShowCount` that the server changed later; its key is the
/// uuid as it stands. Kept for compatibility.
std::int64_t storedShows(const AppCommunicationItem& item) {
  const auto defaults = Platform::current()->userDefaults;
  return defaults->value(*item.uuid) ? defaults->integer(*item.uuid) : *item.maxShowCount;
}

std::optional<std::int64_t> showsLeft(const AppCommunicationItem& item) {
  const std::int64_t left = storedShows(item);
  if (left >= 1) return left;
  refuse(item, Counter::popupsRefusedNoShowsLeft,
         "maxShowCount <= 0 -> maxShowCount = " + std::to_string(left));
  return std::nullopt;
}

void spendShow(const AppCommunicationItem& item, std::int64_t left) {
  Runtime::current()->consent.unlessWithheld(
      [&] { Platform::current()->userDefaults->setValue(*item.uuid, left - 1); });
}

bool accepts(const ListRule& rule, const std::optional<Buttons>& list,
             const AppCommunicationItem& item) {
  if (!list) {
    refuse(item, Counter::popupsRefusedOptions, std::string(rule.word) + " couldn't be assigned");
    return false;
  }
  if (list->size() < rule.fewest) {
    refuse(item, Counter::popupsRefusedOptions, countMessage(rule, "<", rule.fewest, list->size()));
    return false;
  }
  return true;
}

void sayCut(const ListRule& rule, const std::optional<Buttons>& list,
            const AppCommunicationItem& item) {
  if (!list || list->size() <= rule.most) return;
  const std::string message = countMessage(rule, ">", rule.most, list->size());
  print(message);
  inspect(item, "clamped", message);
}

Buttons firstOf(const ListRule& rule, std::optional<Buttons> list) {
  Buttons options = std::move(list).value_or(Buttons());
  options.resize(std::min(options.size(), rule.most));
  return options;
}

std::optional<Buttons> offeredEmojis(const AppCommunicationItem& item) {
  auto emojis = item.emojiList;
  const auto isHidden = [](const auto& emoji) { return !emoji || !emoji->show.value_or(false); };
  if (emojis) std::erase_if(*emojis, isHidden);
  return emojis;
}

void sayNotShown(std::string_view tag, const PopupRequest& request, const std::string& reason) {
  count(Counter::popupsRefusedNotShowable);
  Console::print(tag, "the popup is not shown: " + reason);
  const auto& item = request.preferences.appCommunicationItem;
  if (item) remember(*item, "not shown: " + reason);
  KIFO_INSPECT("popup", {{"uuid", item ? item->uuid.value_or("") : ""},
                         {"outcome", "not shown"},
                         {"reason", reason}});
}

}  // namespace kifo::rules
