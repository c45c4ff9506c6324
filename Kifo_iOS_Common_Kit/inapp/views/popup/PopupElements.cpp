#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupElements.h"

#include <algorithm>
#include <string>

#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextRule.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupHeights.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupImageView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Accessibility.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupCloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupLabel.h"

namespace kifo {
namespace {

using Elements = PopupElements;

constexpr double kThickestBorder = 8;
constexpr double kSmallestCoupon = 8;  // points
constexpr double kLargestCoupon = 40;

QString q(const std::string& text) {
  return QString::fromStdString(text);
}

std::optional<QColor> toQColor(const std::optional<Color>& color) {
  return color ? std::optional(kifo::toQColor(*color)) : std::nullopt;
}

double numberIn(const std::string& text, double fallback, double least, double most) {
  bool ok = false;
  const double number = q(text).trimmed().toDouble(&ok);
  return ok && number > 0 ? std::clamp(number, least, most) : fallback;
}

/// Makes the pieces; a class so that the helpers share what all of them need.
class Builder {
 public:
  Builder(const PopupPreferences& preferences, const PopupTheme& theme, QWidget* view)
      : p_(preferences),
        item_(preferences.appCommunicationItem.get()),
        theme_(theme),
        view_(view) {}

  Elements build() {
    panel();
    e_.popupTitle = label("popupTitle", TextRole::title, p_.title, toQColor(p_.titleColor));
    pictures();
    e_.popupDescription = label("popupDescription", TextRole::description, p_.detailText,
                                toQColor(p_.detailTextColor));
    e_.popupDescription->setNearTop(true);
    if (item_ && item_->coupon) coupon(*item_->coupon);
    e_.popupQuestion =
        label("popupQuestion", TextRole::question, p_.questionText, toQColor(p_.questionColor));
    body();
    if (mayAskForFreeText(p_)) freeText();
    submit();
    e_.closeButton = named(new PopupCloseButton(view_), "closeButton");
    e_.closeButton->setAccessibleName(theme_.options.texts.close);
    return e_;
  }

 private:
  template <class Widget>
  static Widget* named(Widget* widget, const char* name) {
    widget->setObjectName(name);
    return widget;
  }

  PopupLabel* label(const char* name, TextRole role, const std::optional<std::string>& text,
                    const std::optional<QColor>& color) {
    auto* label = named(new PopupLabel(e_.contentView), name);
    label->setFace(theme_.font(role), theme_.text(color.value_or(theme_.ink)));
    label->setLabel(q(text.value_or("")));
    label->setVisible(text && !text->empty());
    return label;
  }

  void panel() {
    e_.popupView = named(new PopupPanel(theme_, view_), "popupView");
    e_.panelScroll = named(new PopupScrollArea(theme_, e_.popupView), "panelScroll");
    e_.contentView = named(new QWidget, "contentView");
    e_.panelScroll->setWidget(e_.contentView);
    e_.contentView->setAutoFillBackground(false);
    if (!item_ || !item_->action) return;
    e_.popupView->setPressable(p_.title && !p_.title->empty() ? q(*p_.title)
                                                              : theme_.options.texts.popup);
  }

  void pictures() {
    if (p_.images.size() > 1) {
      e_.popupImageViewList =
          named(new PopupCarousel(theme_, e_.contentView), "popupImageViewList");
      setAccessibleRole(e_.popupImageViewList, QAccessible::Graphic);
      e_.pageIndicator = named(new PageIndicator(theme_, e_.contentView), "pageIndicator");
      setAccessibleRole(e_.pageIndicator, QAccessible::Indicator);
    } else if (p_.image || !p_.images.empty()) {
      e_.popupImageView = named(new PopupImageView(theme_, e_.contentView), "popupImageView");
      e_.popupImageView->setAccessibleName(theme_.options.texts.image);
      setAccessibleRole(e_.popupImageView, QAccessible::Graphic);
    }
  }

  void coupon(const Coupon& coupon) {
    const QColor background = kifo::toQColor(colorFromHex(coupon.code.backgroundColor));
    const QColor seen = over(background, theme_.panel);
    const QColor color = theme_.text(kifo::toQColor(colorFromHex(coupon.code.color)), seen);
    e_.couponLabel = named(new DashedLabel(e_.contentView), "couponLabel");
    QFont font = theme_.font(TextRole::coupon);
    if (coupon.code.size) {
      const double size =
          numberIn(*coupon.code.size, font.pixelSize(), kSmallestCoupon, kLargestCoupon);
      font.setPixelSize(static_cast<int>(size * theme_.options.fontScale));
    }
    e_.couponLabel->setFace(font, color);
    e_.couponLabel->setLabel(q(coupon.code.text));
    e_.couponLabel->setBackgroundColor(background);
    e_.couponLabel->setTintColor(color);
    e_.couponLabel->setLineWidth(numberIn(
        coupon.border.thickness, e_.couponLabel->shapeLayer().lineWidth, 1, kThickestBorder));
    e_.copyButton = named(new PopupButton(theme_, TextRole::button, e_.contentView), "copyButton");
    e_.copyButton->setCornerRadius(4);
    const CouponCode& look = coupon.button.active;
    e_.copyButton->setCaption(q(look.text));
    e_.copyButton->setColors(kifo::toQColor(colorFromHex(look.backgroundColor)),
                             kifo::toQColor(colorFromHex(look.color)));
    if (look.text.empty()) e_.copyButton->setAccessibleName(theme_.options.texts.copyCode);
  }

  void body() {
    const auto kind = layoutKind(p_);
    if (kind == PopupType::score) return score();
    if (kind == PopupType::openEnded) return;
    if (kind == PopupType::emoji) {
      e_.emojiCollectionView = named(new PopupEmojiRow(e_.contentView), "emojiCollectionView");
      nameGroup(e_.emojiCollectionView);
      return;
    }
    const auto stops =
        kind == PopupType::survey ? RovingFocus::Stops::one : RovingFocus::Stops::every;
    e_.buttonsTableview =
        named(new PopupListView(theme_, stops, PopupState().cellHeight, e_.contentView),
              "buttonsTableview");
    nameGroup(e_.buttonsTableview);
  }

  void nameGroup(QWidget* group) {
    const auto& name = p_.questionText ? p_.questionText : p_.title;
    group->setAccessibleName(name && !name->empty() ? q(*name) : theme_.options.texts.popup);
    setAccessibleRole(group, QAccessible::Grouping);
  }

  PopupLabel* scoreLabel(const char* name, TextRole role, PopupLabel::Alignment alignment) {
    auto* label = named(new PopupLabel(e_.contentView), name);
    QColor color = theme_.ink;
    if (p_.backgroundColor) {
      const Color& b = *p_.backgroundColor;
      const bool dark = 1 - (0.299 * b.red + 0.587 * b.green + 0.114 * b.blue) >= 0.5;
      color = dark ? Qt::white : Qt::black;
    }
    label->setFace(theme_.font(role), theme_.text(color), alignment);
    label->setDigits(true);
    return label;
  }

  void score() {
    const std::int64_t lowest = item_ ? item_->minScore.value_or(0) : 0;
    const std::int64_t highest = item_ ? item_->maxScore.value_or(0) : 0;
    e_.scoreValueLabel =
        scoreLabel("scoreValueLabel", TextRole::score, PopupLabel::Alignment::center);
    e_.sliderMinLabel =
        scoreLabel("sliderMinLabel", TextRole::bound, PopupLabel::Alignment::center);
    e_.sliderMaksLabel =
        scoreLabel("sliderMaksLabel", TextRole::bound, PopupLabel::Alignment::center);
    e_.sliderMinLabel->setLabel(QString::number(lowest));
    e_.sliderMaksLabel->setLabel(QString::number(highest));
    e_.slider = named(new CustomSlider(theme_, e_.contentView), "slider");
    e_.slider->setScores(lowest, highest);
    const bool asked = p_.questionText && !p_.questionText->empty();
    e_.slider->setAccessibleName(asked ? q(*p_.questionText) : theme_.options.texts.score);
  }

  void freeText() {
    const DefaultFreeText question =
        item_ ? item_->defaultFreeText.value_or(DefaultFreeText{}) : DefaultFreeText{};
    QWidget* block = e_.fieldView = named(new QWidget(e_.contentView), "fieldView");
    e_.textFieldLabel = named(new PopupLabel(block), "textFieldLabel");
    const QString asked = q(question.questionText.value_or(""));
    e_.textFieldLabel->setFace(theme_.font(TextRole::label),
                               theme_.text(colorOf(question.textColor).value_or(theme_.ink)),
                               PopupLabel::Alignment::leading);
    e_.textFieldLabel->setLabel(asked);
    e_.textFieldLabel->setVisible(!asked.isEmpty());
    e_.textField = named(new FreeTextField(theme_, block), "textField");
    e_.textField->setAccessibleName(asked.isEmpty() ? theme_.options.texts.freeText : asked);
    e_.textFieldCountLabel = named(new PopupLabel(block), "textFieldCountLabel");
    e_.textFieldCountLabel->setFace(theme_.font(TextRole::counter), theme_.shade(0.75),
                                    PopupLabel::Alignment::trailing);
    e_.textFieldCountLabel->setDigits(true);
    e_.textFieldCountLabel->setLabel(FreeTextRule::count({}));
  }

  void submit() {
    if (!p_.submitButton) return;
    e_.submitButton =
        named(new PopupButton(theme_, TextRole::button, e_.contentView), "submitButton");
    e_.submitButton->setCaption(q(p_.submitButton->text.value_or("")));
    if (!p_.submitButton->text || p_.submitButton->text->empty()) {
      e_.submitButton->setAccessibleName(theme_.options.texts.submit);
    }
    e_.submitButton->setColors(colorOf(p_.submitButton->color),
                               colorOf(p_.submitButton->textColor));
  }

  const PopupPreferences& p_;
  const AppCommunicationItem* item_;
  const PopupTheme& theme_;
  QWidget* view_;
  Elements e_;
};

}  // namespace

PopupElements PopupElements::build(const PopupPreferences& preferences, const PopupTheme& theme,
                                   QWidget* view) {
  return Builder(preferences, theme, view).build();
}

bool asksForFreeText(const PopupPreferences& preferences) {
  const auto kind = layoutKind(preferences);
  if (kind == PopupType::openEnded) return true;
  if (!kind || kind == PopupType::popup || !preferences.appCommunicationItem) return false;
  const auto& item = *preferences.appCommunicationItem;
  return item.defaultFreeText && item.defaultFreeTextCheckBox.value_or(true);
}

bool mayAskForFreeText(const PopupPreferences& preferences) {
  if (asksForFreeText(preferences)) return true;
  const auto& choices = preferences.choices;
  return std::any_of(choices.begin(), choices.end(), [](const auto& choice) {
    return choice && choice->freeTextQuestionCheckBox.value_or(false);
  });
}

}  // namespace kifo
