#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupHeights.h"

#include <algorithm>

namespace kifo {
namespace {

using Heights = PopupHeights;

constexpr double kFieldViewHeight = 100;
constexpr int kListMargin = 10;
constexpr int kListCap = 200;

double openEndedField(const PopupPreferences& p) {
  const bool question = p.appCommunicationItem && p.appCommunicationItem->defaultFreeText;
  return Heights().openFieldHeight(question);
}

double kindHeight(const Heights& h, const PopupPreferences& p) {
  const double question = h.popupQuestionHeight;
  const auto kind = layoutKind(p);
  if (kind == PopupType::emoji) return question + 35 + kFieldViewHeight + 28;
  if (kind == PopupType::score) {
    return 100 + question + Heights::sliderHeight + Heights::scoreValueLabelHeight + 12 +
           (h.isImageListAvailable ? 28 : 0);
  }
  if (kind == PopupType::openEnded) return question + 15 + openEndedField(p);
  return h.tableViewHeigth + 100;
}

double couponHeight(const PopupPreferences& p) {
  if (!p.appCommunicationItem || !p.appCommunicationItem->coupon) return 0;
  return Heights::couponLabelHeight + Heights::couponCopyButtonHeight + 16;
}

double totalOf(const Heights& h, const PopupPreferences& p) {
  return h.popupTitleHeight + h.imageViewHeight + h.popupDescriptionHeight + h.submitButtonHeight +
         35 + kindHeight(h, p) + couponHeight(p) +
         (h.isImageListAvailable ? Heights::indicatorHeight : 0);
}

}  // namespace

PopupHeights PopupHeights::of(const PopupState& fields, const PopupPreferences& preferences) {
  PopupHeights h;
  h.popupTitleHeight = fields.popupTitleHeight;
  h.imageViewHeight = fields.imageViewHeight;
  h.popupDescriptionHeight = fields.popupDescriptionHeight;
  h.popupQuestionHeight = fields.popupQuestionHeight;
  h.tableViewHeigth = fields.tableViewHeigth;
  h.submitButtonHeight = fields.submitButtonHeight;
  h.imagesCount = static_cast<int>(preferences.images.size());
  h.isImageListAvailable = h.imagesCount > 1;
  h.isEmoji = preferences.type == rawValue(PopupType::emoji);
  h.isListCapped = fields.popupType == PopupType::survey;
  h.totalHeight = totalOf(h, preferences);
  return h;
}

double PopupHeights::openFieldHeight(bool hasQuestion) const {
  return hasQuestion ? fieldViewHeight : textFieldHeight + textFieldCountLabelHeight;
}

int PopupHeights::listHeightFor(int rows) const {
  const int given = static_cast<int>(tableViewHeigth);
  if (rows <= given) return given;
  const int grown = rows + kListMargin;
  return isListCapped ? std::max(given, std::min(grown, kListCap)) : grown;
}

std::optional<PopupType> layoutKind(const PopupPreferences& preferences) {
  if (preferences.type) return popupType(*preferences.type);
  const auto& item = preferences.appCommunicationItem;
  return item && item->type ? popupType(*item->type) : std::nullopt;
}

}  // namespace kifo
