#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItemAction.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItemButton.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItemHeader.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItemImage.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItemQuestion.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItemText.h"
#include "Kifo_iOS_Common_Kit/inapp/Coupon.h"
#include "Kifo_iOS_Common_Kit/inapp/DefaultFreeText.h"
#include "Kifo_iOS_Common_Kit/inapp/Interval.h"
#include "Kifo_iOS_Common_Kit/inapp/Selection.h"

namespace kifo {

/// One campaign.
///
/// A shared record: the item, the preferences and the window hold the same one.
struct AppCommunicationItem {
  std::optional<std::string> type;  ///< The raw string of a `PopupType`.
  std::optional<std::string> uuid;  ///< Its identity, and the key of its remaining shows.
  std::optional<std::string> code;
  std::optional<std::string> name;
  std::optional<double> expireDate;  ///< Milliseconds since 1970; below 1e11 seconds since 1970.
  std::optional<std::string> triggeringEventName;  ///< The event that shows it.
  std::shared_ptr<AppCommunicationItemHeader> header;
  std::shared_ptr<AppCommunicationItemText> text;
  std::optional<std::string> image;  ///< URL.
  std::shared_ptr<AppCommunicationItemAction>
      action;  ///< What a touch of the popup's body leads to.
  std::shared_ptr<AppCommunicationItemButton> submitButton;
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemButton>>>
      buttons;  ///< Of a plain popup.
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemButton>>>
      choices;                               ///< Of a survey.
  std::optional<std::int64_t> maxShowCount;  ///< How often it may be shown on this device.
  std::optional<std::string> applicationName;
  std::optional<std::string> scenario;
  std::optional<std::string> bgColor;  ///< Hex text.
  std::shared_ptr<AppCommunicationItemQuestion> question;
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemButton>>> emojiList;
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemImage>>>
      images;  ///< Of a carousel.
  std::optional<bool> sliderSupport;
  std::optional<std::string> businessCategory;
  std::optional<std::int64_t> minScore;
  std::optional<std::int64_t> maxScore;
  std::optional<bool> intervalCheckBox;   ///< Whether `interval` counts.
  std::optional<bool> selectionCheckBox;  ///< Whether `selection` counts.
  std::optional<Selection> selection;
  std::optional<DefaultFreeText> defaultFreeText;
  std::optional<bool>
      defaultFreeTextCheckBox;  ///< False: only choices that ask for it show the free-text field.
  std::optional<Interval> interval;
  std::optional<Coupon> coupon;
};

template <>
struct RecordFields<AppCommunicationItem> {
  static constexpr auto fields = std::tuple(
      field("type", &AppCommunicationItem::type), field("uuid", &AppCommunicationItem::uuid),
      field("code", &AppCommunicationItem::code), field("name", &AppCommunicationItem::name),
      field("expireDate", &AppCommunicationItem::expireDate),
      field("triggeringEventName", &AppCommunicationItem::triggeringEventName),
      field("header", &AppCommunicationItem::header), field("text", &AppCommunicationItem::text),
      field("image", &AppCommunicationItem::image), field("action", &AppCommunicationItem::action),
      field("submitButton", &AppCommunicationItem::submitButton),
      field("buttons", &AppCommunicationItem::buttons),
      field("choices", &AppCommunicationItem::choices),
      field("maxShowCount", &AppCommunicationItem::maxShowCount),
      field("applicationName", &AppCommunicationItem::applicationName),
      field("scenario", &AppCommunicationItem::scenario),
      field("bgColor", &AppCommunicationItem::bgColor),
      field("question", &AppCommunicationItem::question),
      field("emojiList", &AppCommunicationItem::emojiList),
      field("images", &AppCommunicationItem::images),
      field("sliderSupport", &AppCommunicationItem::sliderSupport),
      field("businessCategory", &AppCommunicationItem::businessCategory),
      field("minScore", &AppCommunicationItem::minScore),
      field("maxScore", &AppCommunicationItem::maxScore),
      field("intervalCheckBox", &AppCommunicationItem::intervalCheckBox),
      field("selectionCheckBox", &AppCommunicationItem::selectionCheckBox),
      field("selection", &AppCommunicationItem::selection),
      field("defaultFreeText", &AppCommunicationItem::defaultFreeText),
      field("defaultFreeTextCheckBox", &AppCommunicationItem::defaultFreeTextCheckBox),
      field("interval", &AppCommunicationItem::interval),
      field("coupon", &AppCommunicationItem::coupon));
};

}  // namespace kifo
