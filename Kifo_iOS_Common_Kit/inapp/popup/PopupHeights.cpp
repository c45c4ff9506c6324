#include "Kifo_iOS_Common_Kit/inapp/popup/PopupHeights.h"

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

double kindHeight(const Heights& h, const PopupState& state) {
  const double question = h.popupQuestionHeight;
  if (state.layoutKind == PopupType::emoji) return question + 35 + kFieldViewHeight + 28;
  if (state.layoutKind == PopupType::score) {
    return 100 + question + Heights::sliderHeight + Heights::scoreValueLabelHeight + 12 +
           (h.isImageListAvailable ? 28 : 0);
  }
  if (state.layoutKind == PopupType::openEnded) {
    return question + 15 + openEndedField(state.preferences);
  }
  return h.tableViewHeigth + 100;
}

double couponHeight(const PopupPreferences& p) {
  if (!p.appCommunicationItem || !p.appCommunicationItem->coupon) return 0;
  return Heights::couponLabelHeight + Heights::couponCopyButtonHeight + 16;
}

double totalOf(const Heights& h, const PopupState& state) {
  return h.popupTitleHeight + h.imageViewHeight + h.popupDescriptionHeight + h.submitButtonHeight +
         35 + kindHeight(h, state) + couponHeight(state.preferences) +
         (h.isImageListAvailable ? Heights::indicatorHeight : 0);
}

}  // namespace

PopupHeights PopupHeights::of(const PopupState& state) {
  PopupHeights h;
  h.popupTitleHeight = state.popupTitleHeight;
  h.imageViewHeight = state.imageViewHeight;
  h.popupDescriptionHeight = state.popupDescriptionHeight;
  h.popupQuestionHeight = state.popupQuestionHeight;
  h.tableViewHeigth = state.tableViewHeigth;
  h.submitButtonHeight = state.submitButtonHeight;
  h.imagesCount = static_cast<int>(state.images.size());
  h.isImageListAvailable = h.imagesCount > 1;
  h.isEmoji = state.preferences.type == rawValue(PopupType::emoji);
  h.isPlain = state.popupType == PopupType::popup;
  h.isListCapped = state.popupType == PopupType::survey;
  h.totalHeight = totalOf(h, state);
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

}  // namespace kifo
