#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "Kifo_iOS_Common_Kit/core/Console.h"

namespace kifo {
namespace {

constexpr double kListMargin = 10;
constexpr double kSurveyListCap = 200;
constexpr double kElementHeight = 50;

double heightIf(bool present) {
  return present ? kElementHeight : 0;
}

bool hasText(const std::optional<std::string>& text) {
  return text && !text->empty();
}

/// Score and open-ended campaigns, and whatever else is no plain popup and no survey, count as
/// emoji here; submitting goes by the item's own type. Kept for compatibility.
PopupType windowType(const std::optional<std::string>& type) {
  if (type == rawValue(PopupType::popup)) return PopupType::popup;
  if (type == rawValue(PopupType::survey)) return PopupType::survey;
  return PopupType::emoji;
}

/// The preferences' type text, or the item's when there is none.
std::optional<PopupType> layoutKindOf(const PopupPreferences& preferences) {
  if (preferences.type) return popupType(*preferences.type);
  const auto& item = preferences.appCommunicationItem;
  return item && item->type ? popupType(*item->type) : std::nullopt;
}

double listHeight(PopupType type, double cellHeight, std::size_t rows) {
  const double height = cellHeight * static_cast<double>(rows);
  if (type == PopupType::emoji) return height;
  if (type == PopupType::popup) return height + kListMargin;
  return std::min(height + kListMargin, kSurveyListCap);
}

/// Always for an open-ended question; for a survey, emojis and a score when the campaign has a
/// free-text question that is not tied to particular choices; never for a plain popup.
bool startsWithFreeText(const PopupState& state) {
  if (state.layoutKind == PopupType::openEnded) return true;
  if (!state.layoutKind || state.layoutKind == PopupType::popup) return false;
  const auto& item = state.appCommunicationItem;
  return item && item->defaultFreeText && item->defaultFreeTextCheckBox.value_or(true);
}

}  // namespace

PopupState PopupState::of(const PopupRequest& request, double screenWidth) {
  const PopupPreferences& p = request.preferences;
  PopupState state;
  state.preferences = p;
  state.appCommuncationItem = p.appCommunicationItem;
  state.appCommunicationItem = p.appCommunicationItem;
  if (p.appCommunicationItem) {
    state.defaultFreeTextCheckBox = p.appCommunicationItem->defaultFreeTextCheckBox;
    state.sliderValue = static_cast<float>(p.appCommunicationItem->minScore.value_or(0));
  }
  state.popupType = windowType(p.type);
  state.layoutKind = layoutKindOf(p);
  state.pageName = p.pageName;
  state.controller = p.controller;
  state.actionItem = request.actionItem;
  state.submitButtonItem = request.submitButtonItem;
  state.actionBodyItem = request.actionBodyItem;
  state.submitButtonHeight = heightIf(p.submitButton != nullptr);
  state.popupDescriptionHeight = heightIf(hasText(p.detailText));
  state.popupQuestionHeight = heightIf(hasText(p.questionText));
  const bool plain = state.popupType == PopupType::popup;
  (plain ? state.buttons : state.choices) = plain ? p.buttons : p.choices;
  state.tableViewHeigth = listHeight(state.popupType, state.cellHeight, state.options().size());
  state.images = p.images;
  state.setScreenWidth(screenWidth);
  state.isFreeTextOpen = startsWithFreeText(state);
  return state;
}

double PopupState::margins(double screenWidth) {
  return screenWidth < 400 ? 62 : 70;
}

void PopupState::setScreenWidth(double screenWidth) {
  const bool pictured = preferences.image || !preferences.images.empty();
  imageViewHeight = pictured ? (screenWidth - margins(screenWidth)) * 0.5 : 0;
}

const PopupState::Buttons& PopupState::options() const {
  return popupType == PopupType::popup ? buttons : choices;
}

std::optional<int> PopupState::rowOf(const AppCommunicationItemButton& button) const {
  const auto found = std::find_if(choices.begin(), choices.end(), [&](const auto& choice) {
    return choice && choice->id == button.id;
  });
  if (found == choices.end()) return std::nullopt;
  return static_cast<int>(std::distance(choices.begin(), found));
}

std::optional<int> PopupState::chosenRow() const {
  return selectActionItem ? rowOf(*selectActionItem) : std::nullopt;
}

void PopupState::select(const Button& button) {
  selectActionItem = button;
  if (popupType == PopupType::emoji) currentSelected = rowOf(*button);
  if (defaultFreeTextCheckBox.value_or(true)) return;
  isFreeTextOpen = mayAskForFreeText() && button->freeTextQuestionCheckBox.value_or(false);
  if (!isFreeTextOpen) freeText.clear();
}

bool PopupState::waitsForChoice() const {
  const bool chooses = popupType == PopupType::survey || layoutKind == PopupType::emoji;
  return chooses && !selectActionItem;
}

bool PopupState::mayAskForFreeText() const {
  return startsWithFreeText(*this) || std::ranges::any_of(choices, [](const Button& choice) {
           return choice && choice->freeTextQuestionCheckBox.value_or(false);
         });
}

std::int64_t PopupState::score() const {
  if (!std::isfinite(sliderValue) || std::abs(sliderValue) >= 0x1p63f) {
    fatalError("the slider's value is no integer");
  }
  return static_cast<std::int64_t>(sliderValue);
}

int PopupState::nextPage() const {
  return currentIndex == static_cast<int>(images.size()) - 1 ? 0 : currentIndex + 1;
}

std::vector<InAppAnswer> PopupState::answers() const {
  std::vector<InAppAnswer> all;
  if (const Button& chosen = selectActionItem) {
    auto& answer = all.emplace_back();
    answer.choice = chosen;
    answer.choiseField =
        ChoiseFieldModel{chosen->id.value_or(""), chosen->text.value_or(""), freeText};
  }
  const auto& type = appCommunicationItem->type;
  if (type == rawValue(PopupType::score)) {
    all.emplace_back().scoreField = ScoreFieldModel{score(), freeText};
  } else if (type == rawValue(PopupType::openEnded)) {
    all.emplace_back().openEndedField = OpenEndedFieldModel{freeText};
  }
  return all;
}

PopupState::Button PopupState::bodyButton() const {
  if (!appCommunicationItem || !appCommunicationItem->action) return nullptr;
  auto button = std::make_shared<AppCommunicationItemButton>();
  button->action = appCommunicationItem->action;
  return button;
}

}  // namespace kifo
