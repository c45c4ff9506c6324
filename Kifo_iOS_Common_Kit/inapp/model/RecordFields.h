#pragma once

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"

/// The JSON fields of the in-app records. Needed by whoever decodes or encodes one.
namespace kifo {

/// Any text but the six raw values does not decode, and with it the whole answer.
bool read(const Value& json, SelectedOperator& value);
Value write(SelectedOperator value);

template <>
struct RecordFields<AppCommunicationItemAction> {
  static constexpr auto fields = std::tuple(field("link", &AppCommunicationItemAction::link),
                                            field("type", &AppCommunicationItemAction::type));
};

template <>
struct RecordFields<AppCommunicationItemButton> {
  static constexpr auto fields = std::tuple(
      field("id", &AppCommunicationItemButton::id),
      field("text", &AppCommunicationItemButton::text),
      field("color", &AppCommunicationItemButton::color),
      field("textColor", &AppCommunicationItemButton::textColor),
      field("action", &AppCommunicationItemButton::action),
      field("type", &AppCommunicationItemButton::type),
      field("show", &AppCommunicationItemButton::show),
      field("imageUrl", &AppCommunicationItemButton::imageUrl),
      field("freeTextQuestionCheckBox", &AppCommunicationItemButton::freeTextQuestionCheckBox));
};

template <>
struct RecordFields<AppCommunicationItemHeader> {
  static constexpr auto fields = std::tuple(field("text", &AppCommunicationItemHeader::text),
                                            field("color", &AppCommunicationItemHeader::color));
};

template <>
struct RecordFields<AppCommunicationItemText> {
  static constexpr auto fields = std::tuple(field("text", &AppCommunicationItemText::text),
                                            field("color", &AppCommunicationItemText::color),
                                            field("bgColor", &AppCommunicationItemText::bgColor));
};

template <>
struct RecordFields<AppCommunicationItemQuestion> {
  static constexpr auto fields = std::tuple(field("text", &AppCommunicationItemQuestion::text),
                                            field("color", &AppCommunicationItemQuestion::color));
};

template <>
struct RecordFields<AppCommunicationItemImage> {
  static constexpr auto fields = std::tuple(field("url", &AppCommunicationItemImage::url));
};

template <>
struct RecordFields<CouponCode> {
  static constexpr auto fields = std::tuple(
      field("text", &CouponCode::text), field("color", &CouponCode::color),
      field("backgroundColor", &CouponCode::backgroundColor), field("size", &CouponCode::size));
};

template <>
struct RecordFields<Button> {
  static constexpr auto fields =
      std::tuple(field("active", &Button::active), field("inactive", &Button::inactive));
};

template <>
struct RecordFields<Border> {
  static constexpr auto fields =
      std::tuple(field("color", &Border::color), field("thickness", &Border::thickness));
};

template <>
struct RecordFields<Coupon> {
  static constexpr auto fields =
      std::tuple(field("code", &Coupon::code), field("button", &Coupon::button),
                 field("border", &Coupon::border));
};

template <>
struct RecordFields<DefaultFreeText> {
  static constexpr auto fields = std::tuple(field("textColor", &DefaultFreeText::textColor),
                                            field("questionText", &DefaultFreeText::questionText));
};

template <>
struct RecordFields<Interval> {
  static constexpr auto fields =
      std::tuple(field("fromValue", &Interval::fromValue), field("toValue", &Interval::toValue));
};

template <>
struct RecordFields<Selection> {
  static constexpr auto fields = std::tuple(
      field("value", &Selection::value), field("selectedOperator", &Selection::selectedOperator));
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

template <>
struct RecordFields<BlockedEvents> {
  static constexpr auto fields = std::tuple(field("name", &BlockedEvents::name));
};

template <>
struct RecordFields<Configuration> {
  static constexpr auto fields = std::tuple(
      field("id", &Configuration::id), field("stopAllEvents", &Configuration::stopAllEvents),
      field("offlineQueueSize", &Configuration::offlineQueueSize));
};

template <>
struct RecordFields<AppCommunication> {
  static constexpr auto fields =
      std::tuple(field("model", &AppCommunication::model),
                 field("configuration", &AppCommunication::configuration),
                 field("blockedEvents", &AppCommunication::blockedEvents));
};

}  // namespace kifo
