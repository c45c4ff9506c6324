#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupElements.h"

#include <algorithm>
#include <string>

#include "Kifo_iOS_Common_Kit/inapp/popup/FreeTextRule.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupImageView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Accessibility.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

using Elements = PopupElements;

constexpr double kThickestBorder = 8;
constexpr double kSmallestCoupon = 8;  // points
constexpr double kLargestCoupon = 40;

QString q(const std::string& text) {
  return QString::fromStdString(text);
}

double numberIn(const std::string& text, double fallback, double least, double most) {
  bool ok = false;
  const double number = q(text).trimmed().toDouble(&ok);
  return ok && number > 0 ? std::clamp(number, least, most) : fallback;
}

/// Makes the pieces; a class so that the helpers share what all of them need.
class Builder {
 public:
  Builder(const PopupState& state, const PopupTheme& theme, QWidget* view)
      : state_(state),
        p_(state.preferences),
        item_(state.appCommunicationItem.get()),
        theme_(theme),
        view_(view) {}

  Elements build() {
    panel();
    e_.popupTitle = label("popupTitle", TextRole::title, p_.title, toQColor(p_.titleColor));
    pictures();
    e_.popupDescription = label("popupDescription", TextRole::description, p_.detailText,
                                toQColor(p_.detailTextColor));
    if (item_ && item_->coupon) coupon(*item_->coupon);
    e_.popupQuestion =
        label("popupQuestion", TextRole::question, p_.questionText, toQColor(p_.questionColor));
    body();
    anchorTexts();
    if (state_.mayAskForFreeText()) freeText();
    submit();
    e_.closeButton = named(new CloseButton(view_), "closeButton");
    e_.closeButton->setAccessibleName(theme_.options.texts.close);
    return e_;
  }

 private:
  template <class Widget>
  static Widget* named(Widget* widget, const char* name) {
    widget->setObjectName(name);
    return widget;
  }

  TextLabel* label(const char* name, TextRole role, const std::optional<std::string>& text,
                   const std::optional<QColor>& color) {
    auto* label = named(new TextLabel(e_.contentView), name);
    label->setFace(theme_.font(role), theme_.text(role, color.value_or(theme_.ink)));
    label->setText(q(text.value_or("")));
    label->setVisible(text && !text->empty());
    return label;
  }

  /// A text that does not fill its box stands by what it belongs to.
  void anchorTexts() {
    using Vertical = WrappedText::Vertical;
    const bool pictured = e_.popupImageView || e_.popupImageViewList;
    e_.popupTitle->setVertical(pictured ? Vertical::middle : Vertical::bottom);
    e_.popupDescription->setVertical(Vertical::top);
    e_.popupQuestion->setVertical(Vertical::bottom);
  }

  void panel() {
    e_.popupView = named(new PopupPanel(theme_, view_), "popupView");
    e_.panelScroll =
        named(new PopupScrollArea(theme_.options.reducedMotion, e_.popupView), "panelScroll");
    e_.panelScroll->setColors(theme_.panel, theme_.ink);
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
    const QColor background = toQColor(colorFromHex(coupon.code.backgroundColor));
    const QColor seen = over(background, theme_.panel);
    const QColor color =
        theme_.text(TextRole::coupon, toQColor(colorFromHex(coupon.code.color)), seen);
    e_.couponLabel = named(new DashedLabel(e_.contentView), "couponLabel");
    QFont font = theme_.font(TextRole::coupon);
    if (coupon.code.size) {
      const double size =
          numberIn(*coupon.code.size, font.pixelSize(), kSmallestCoupon, kLargestCoupon);
      font.setPixelSize(static_cast<int>(size * theme_.options.fontScale));
    }
    e_.couponLabel->setFace(font, color);
    e_.couponLabel->setText(q(coupon.code.text));
    e_.couponLabel->setBackgroundColor(background);
    e_.couponLabel->setTintColor(color);
    e_.couponLabel->setLineWidth(numberIn(
        coupon.border.thickness, e_.couponLabel->shapeLayer().lineWidth, 1, kThickestBorder));
    e_.copyButton = named(new PopupButton(theme_, TextRole::button, e_.contentView), "copyButton");
    e_.copyButton->setCornerRadius(4);
    const CouponCode& look = coupon.button.active;
    e_.copyButton->setCaption(q(look.text));
    e_.copyButton->setColors(toQColor(colorFromHex(look.backgroundColor)),
                             toQColor(colorFromHex(look.color)));
    if (look.text.empty()) e_.copyButton->setAccessibleName(theme_.options.texts.copyCode);
  }

  void body() {
    const auto kind = state_.layoutKind;
    if (kind == PopupType::score) return score();
    if (kind == PopupType::openEnded) return;
    if (kind == PopupType::emoji) {
      e_.emojiCollectionView =
          named(new PopupEmojiRow(theme_, e_.contentView), "emojiCollectionView");
      nameGroup(e_.emojiCollectionView);
      return;
    }
    const auto stops =
        kind == PopupType::survey ? RovingFocus::Stops::one : RovingFocus::Stops::every;
    e_.buttonsTableview = named(new PopupListView(theme_, stops, state_.cellHeight, e_.contentView),
                                "buttonsTableview");
    nameGroup(e_.buttonsTableview);
  }

  void nameGroup(QWidget* group) {
    const auto& name = p_.questionText ? p_.questionText : p_.title;
    group->setAccessibleName(name && !name->empty() ? q(*name) : theme_.options.texts.popup);
    setAccessibleRole(group, QAccessible::Grouping);
  }

  TextLabel* scoreLabel(const char* name, TextRole role, TextLabel::Alignment alignment) {
    auto* label = named(new TextLabel(e_.contentView), name);
    const QColor color = toQColor(theme_.palette.scoreText(p_));
    label->setFace(theme_.font(role), theme_.text(TextRole::score, color), alignment);
    label->setDigits(true);
    return label;
  }

  void score() {
    const std::int64_t lowest = item_ ? item_->minScore.value_or(0) : 0;
    const std::int64_t highest = item_ ? item_->maxScore.value_or(0) : 0;
    e_.scoreValueLabel =
        scoreLabel("scoreValueLabel", TextRole::score, TextLabel::Alignment::center);
    e_.sliderMinLabel = scoreLabel("sliderMinLabel", TextRole::bound, TextLabel::Alignment::center);
    e_.sliderMaksLabel =
        scoreLabel("sliderMaksLabel", TextRole::bound, TextLabel::Alignment::center);
    e_.sliderMinLabel->setText(QString::number(lowest));
    e_.sliderMaksLabel->setText(QString::number(highest));
    e_.slider = named(new CustomSlider(theme_, e_.contentView), "slider");
    e_.slider->setScores(lowest, highest);
    const bool asked = p_.questionText && !p_.questionText->empty();
    e_.slider->setAccessibleName(asked ? q(*p_.questionText) : theme_.options.texts.score);
  }

  void freeText() {
    const DefaultFreeText question =
        item_ ? item_->defaultFreeText.value_or(DefaultFreeText{}) : DefaultFreeText{};
    QWidget* block = e_.fieldView = named(new QWidget(e_.contentView), "fieldView");
    e_.textFieldLabel = named(new TextLabel(block), "textFieldLabel");
    const QString asked = q(question.questionText.value_or(""));
    e_.textFieldLabel->setFace(
        theme_.font(TextRole::label),
        theme_.text(TextRole::label, toQColor(colorOf(question.textColor)).value_or(theme_.ink)),
        TextLabel::Alignment::leading);
    e_.textFieldLabel->setText(asked);
    e_.textFieldLabel->setVisible(!asked.isEmpty());
    e_.textField = named(new FreeTextField(theme_, block), "textField");
    e_.textField->setAccessibleName(asked.isEmpty() ? theme_.options.texts.freeText : asked);
    e_.textFieldCountLabel = named(new TextLabel(block), "textFieldCountLabel");
    e_.textFieldCountLabel->setFace(theme_.font(TextRole::counter),
                                    theme_.text(TextRole::counter, theme_.shade(0.75)),
                                    TextLabel::Alignment::trailing);
    e_.textFieldCountLabel->setDigits(true);
    e_.textFieldCountLabel->setText(q(FreeTextRule::count({})));
  }

  void submit() {
    if (!p_.submitButton) return;
    e_.submitButton =
        named(new PopupButton(theme_, TextRole::button, e_.contentView), "submitButton");
    e_.submitButton->setCaption(q(p_.submitButton->text.value_or("")));
    if (!p_.submitButton->text || p_.submitButton->text->empty()) {
      e_.submitButton->setAccessibleName(theme_.options.texts.submit);
    }
    e_.submitButton->setColors(toQColor(colorOf(p_.submitButton->color)),
                               toQColor(colorOf(p_.submitButton->textColor)));
  }

  const PopupState& state_;
  const PopupPreferences& p_;
  const AppCommunicationItem* item_;
  const PopupTheme& theme_;
  QWidget* view_;
  Elements e_;
};

}  // namespace

PopupElements PopupElements::build(const PopupState& state, const PopupTheme& theme,
                                   QWidget* view) {
  return Builder(state, theme, view).build();
}

}  // namespace kifo
