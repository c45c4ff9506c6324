#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

/// A campaign and its parts, as the server writes them. What is optional there is a `std::optional`
/// or a null pointer here.
///
/// **Ownership:** records held by `std::shared_ptr` are shared: the item, the preferences and the
/// window hold the same one. The others are values.
/// **Threading:** plain data; not changed once decoded.
namespace kifo {

/// Where a press leads.
struct AppCommunicationItemAction {
  std::optional<std::string> link;
  std::optional<std::string> type;  ///< What kind of link it is.
};

/// Every option that a user can choose: popup button, survey choice, emoji, submit button, push
/// button.
struct AppCommunicationItemButton {
  std::optional<std::string> id;
  std::optional<std::string> text;
  std::optional<std::string> color;      ///< Background, hex text.
  std::optional<std::string> textColor;  ///< Hex text.
  std::shared_ptr<AppCommunicationItemAction> action;
  std::optional<std::string> type;
  std::optional<bool> show;                      ///< An emoji is offered only when this is true.
  std::optional<std::string> imageUrl;           ///< An emoji's picture.
  std::optional<bool> freeTextQuestionCheckBox;  ///< Choosing it asks for free text.
};

/// A campaign's title.
struct AppCommunicationItemHeader {
  std::optional<std::string> text;
  std::optional<std::string> color;  ///< Hex text.
};

/// A campaign's body text.
struct AppCommunicationItemText {
  std::optional<std::string> text;
  std::optional<std::string> color;    ///< Hex text.
  std::optional<std::string> bgColor;  ///< Hex text.
};

/// A campaign's question.
struct AppCommunicationItemQuestion {
  std::optional<std::string> text;
  std::optional<std::string> color;  ///< Hex text.
};

/// One picture of a carousel.
struct AppCommunicationItemImage {
  std::optional<std::string> url;
};

/// A coupon's text and look.
struct CouponCode {
  std::string text;
  std::string color;                ///< Hex text.
  std::string backgroundColor;      ///< Hex text.
  std::optional<std::string> size;  ///< Font size in points, as text.
};

/// The copy button's look before and after copying.
struct Button {
  CouponCode active;    ///< Before.
  CouponCode inactive;  ///< After.
};

/// A coupon's border.
struct Border {
  std::string color;      ///< Hex text.
  std::string thickness;  ///< A number written as text, logical pixels.
};

/// A coupon code to show and to copy.
struct Coupon {
  CouponCode code;
  Button button;
  Border border;
};

/// The free-text question that goes with an answer.
struct DefaultFreeText {
  std::optional<std::string> textColor;  ///< Hex text.
  std::optional<std::string> questionText;
};

/// A range of scores.
struct Interval {
  std::int64_t fromValue = 0;
  std::int64_t toValue = 0;
};

/// How a score is compared with a condition's value.
enum class SelectedOperator {
  greaterThan,
  greaterThanEqualTo,
  lessThan,
  lessThanEqualTo,
  isEqualTo,
  notEqualTo,
};

/// "GREATER_THAN" and so on, as the server writes it.
KIFO_EXPORT std::string_view rawValue(SelectedOperator value);

/// A condition on a score.
struct Selection {
  std::int64_t value = 0;
  SelectedOperator selectedOperator = SelectedOperator::greaterThan;
};

/// One campaign.
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
  /// What a touch of the popup's body leads to.
  std::shared_ptr<AppCommunicationItemAction> action;
  std::shared_ptr<AppCommunicationItemButton> submitButton;
  /// Of a plain popup.
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemButton>>> buttons;
  /// Of a survey.
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemButton>>> choices;
  std::optional<std::int64_t> maxShowCount;  ///< How often it may be shown on this device.
  std::optional<std::string> applicationName;
  std::optional<std::string> scenario;
  std::optional<std::string> bgColor;  ///< Hex text.
  std::shared_ptr<AppCommunicationItemQuestion> question;
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemButton>>> emojiList;
  /// Of a carousel.
  std::optional<std::vector<std::shared_ptr<AppCommunicationItemImage>>> images;
  std::optional<bool> sliderSupport;
  std::optional<std::string> businessCategory;
  std::optional<std::int64_t> minScore;
  std::optional<std::int64_t> maxScore;
  std::optional<bool> intervalCheckBox;   ///< Whether `interval` counts.
  std::optional<bool> selectionCheckBox;  ///< Whether `selection` counts.
  std::optional<Selection> selection;
  std::optional<DefaultFreeText> defaultFreeText;
  /// False: only choices that ask for it show the free-text field.
  std::optional<bool> defaultFreeTextCheckBox;
  std::optional<Interval> interval;
  std::optional<Coupon> coupon;
};

}  // namespace kifo
