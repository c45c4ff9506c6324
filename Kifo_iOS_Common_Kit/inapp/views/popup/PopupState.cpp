#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupState.h"

#include <algorithm>
#include <iterator>

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
/// emoji here; submitting goes by the item's own type.
PopupType windowType(const std::optional<std::string>& type) {
  if (type == rawValue(PopupType::popup)) return PopupType::popup;
  if (type == rawValue(PopupType::survey)) return PopupType::survey;
  return PopupType::emoji;
}

double listHeight(PopupType type, double cellHeight, std::size_t rows) {
  const double height = cellHeight * static_cast<double>(rows);
  if (type == PopupType::emoji) return height;
  if (type == PopupType::popup) return height + kListMargin;
  return std::min(height + kListMargin, kSurveyListCap);
}

}  // namespace

PopupState PopupState::from(const PopupRequest& request, double screenWidth) {
  const PopupPreferences& p = request.preferences;
  PopupState fields;
  fields.appCommuncationItem = p.appCommunicationItem;
  if (p.appCommunicationItem) {
    fields.defaultFreeTextCheckBox = p.appCommunicationItem->defaultFreeTextCheckBox;
  }
  fields.popupType = windowType(p.type);
  fields.appCommunicationItem = p.appCommunicationItem;
  fields.pageName = p.pageName;
  fields.controller = p.controller;
  fields.actionItem = request.actionItem;
  fields.submitButtonItem = request.submitButtonItem;
  fields.actionBodyItem = request.actionBodyItem;
  fields.submitButtonHeight = heightIf(p.submitButton != nullptr);
  fields.popupDescriptionHeight = heightIf(hasText(p.detailText));
  fields.popupQuestionHeight = heightIf(hasText(p.questionText));
  fields.imageViewHeight = imageHeight(p, screenWidth);
  const bool plain = fields.popupType == PopupType::popup;
  (plain ? fields.buttons : fields.choices) = plain ? p.buttons : p.choices;
  fields.tableViewHeigth = listHeight(fields.popupType, fields.cellHeight,
                                      plain ? fields.buttons.size() : fields.choices.size());
  fields.images = p.images;
  return fields;
}

double PopupState::margins(double screenWidth) {
  return screenWidth < 400 ? 62 : 70;
}

double PopupState::imageHeight(const PopupPreferences& preferences, double screenWidth) {
  if (!preferences.image && preferences.images.empty()) return 0;
  return (screenWidth - margins(screenWidth)) * 0.5;
}

std::optional<int> PopupState::rowOf(const AppCommunicationItemButton& button) const {
  const auto found = std::find_if(choices.begin(), choices.end(), [&](const auto& choice) {
    return choice && choice->id == button.id;
  });
  if (found == choices.end()) return std::nullopt;
  return static_cast<int>(std::distance(choices.begin(), found));
}

}  // namespace kifo
