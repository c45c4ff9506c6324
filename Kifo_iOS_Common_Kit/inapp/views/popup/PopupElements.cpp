#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupElements.h"

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

/// Makes the pieces; a class so that the helpers share what all of them need.
class Builder {
 public:
  Builder(const PopupState& state, const PopupContent& content, const PopupTheme& theme,
          QWidget* view)
      : state_(state),
        p_(state.preferences),
        item_(state.appCommunicationItem.get()),
        content_(content),
        theme_(theme),
        view_(view) {}

  Elements build() {
    panel();
    e_.popupTitle = label("popupTitle", content_.title, e_.contentView);
    pictures();
    e_.popupDescription = label("popupDescription", content_.description, e_.contentView);
    if (item_ && item_->coupon) coupon();
    e_.popupQuestion = label("popupQuestion", content_.question, e_.contentView);
    body();
    if (state_.mayAskForFreeText()) freeText();
    if (p_.submitButton) e_.submitButton = button("submitButton", content_.submit);
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

  /// A text that there is none of is not seen.
  static TextLabel* label(const char* name, const TextLook& look, QWidget* parent) {
    auto* label = named(new TextLabel(parent), name);
    label->setLook(look);
    label->setVisible(!look.text.isEmpty());
    return label;
  }

  PopupButton* button(const char* name, const OptionText& text) {
    auto* button = named(new PopupButton(theme_, TextRole::button, e_.contentView), name);
    button->setOption(text);
    return button;
  }

  void panel() {
    e_.popupView = named(new PopupPanel(theme_, view_), "popupView");
    e_.panelScroll =
        named(new PopupScrollArea(theme_.options.reducedMotion, e_.popupView), "panelScroll");
    e_.panelScroll->setColors(theme_.panel, theme_.ink);
    e_.contentView = named(new QWidget, "contentView");
    e_.panelScroll->setWidget(e_.contentView);
    e_.contentView->setAutoFillBackground(false);
    if (item_ && item_->action) e_.popupView->setPressable(content_.name);
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

  void coupon() {
    e_.couponLabel = named(new DashedLabel(e_.contentView), "couponLabel");
    e_.couponLabel->setLook(content_.coupon);
    e_.couponLabel->setShape(content_.couponLook);
    e_.copyButton = button("copyButton", content_.copy);
    e_.copyButton->setCornerRadius(4);
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
    group->setAccessibleName(content_.groupName);
    setAccessibleRole(group, QAccessible::Grouping);
  }

  void score() {
    e_.scoreValueLabel = named(new TextLabel(e_.contentView), "scoreValueLabel");
    e_.scoreValueLabel->setLook(content_.score);
    e_.sliderMinLabel = label("sliderMinLabel", content_.minimum, e_.contentView);
    e_.sliderMaksLabel = label("sliderMaksLabel", content_.maximum, e_.contentView);
    e_.slider = named(new CustomSlider(theme_, e_.contentView), "slider");
    e_.slider->setScores(item_ ? item_->minScore.value_or(0) : 0,
                         item_ ? item_->maxScore.value_or(0) : 0);
    e_.slider->setAccessibleName(content_.sliderName);
  }

  void freeText() {
    QWidget* block = e_.fieldView = named(new QWidget(e_.contentView), "fieldView");
    e_.textFieldLabel = label("textFieldLabel", content_.fieldLabel, block);
    e_.textField = named(new FreeTextField(theme_, block), "textField");
    e_.textField->setAccessibleName(content_.fieldName);
    e_.textFieldCountLabel = label("textFieldCountLabel", PopupContent::counter(theme_, {}), block);
  }

  const PopupState& state_;
  const PopupPreferences& p_;
  const AppCommunicationItem* item_;
  const PopupContent& content_;
  const PopupTheme& theme_;
  QWidget* view_;
  Elements e_;
};

}  // namespace

PopupElements PopupElements::build(const PopupState& state, const PopupContent& content,
                                   const PopupTheme& theme, QWidget* view) {
  return Builder(state, content, theme, view).build();
}

}  // namespace kifo
