#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupLayout.h"

#include <algorithm>
#include <cmath>

#include <QFontMetrics>
#include <QStyle>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupImageView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr int kGap = 8;
constexpr int kWideGap = 10;
constexpr int kTextInset = 10;
constexpr int kCopyInset = 12;  ///< 4 within the list, which is 8 within the panel.
constexpr int kCounterWidth = 40;
constexpr int kCounterGap = 9;    ///< Leaves the counter 11 of the block's 100.
constexpr int kCouponInset = 20;  ///< Keeps the code clear of its border.
constexpr int kSmallestCode = 12;
constexpr int kSmallestBound = 9;
constexpr int kTextRoom = 6;  ///< Above and below a text that outgrows its height.

int whole(double height) {
  return static_cast<int>(std::lround(height));
}

/// A text that fits keeps the height it is given; one that does not gets some air as well.
int heightOf(const TextLabel& label, int width, double height) {
  const int needed = label.heightForWidth(width);
  return needed <= whole(height) ? whole(height) : needed + kTextRoom;
}

/// Puts `widget` below what is there and moves on.
template <class Cursor>
void put(Cursor& at, QWidget* widget, int gap, int inset, int height) {
  at.y += gap;
  widget->setGeometry(inset, at.y, std::max(at.width - 2 * inset, 0), height);
  at.y += height;
}

}  // namespace

void PopupLayout::title(Cursor& at) const {
  put(at, e_.popupTitle, kGap, kGap,
      heightOf(*e_.popupTitle, at.width - 2 * kGap, h_.popupTitleHeight));
}

void PopupLayout::pictures(Cursor& at) const {
  QWidget* picture = e_.popupImageViewList;
  if (!picture) picture = e_.popupImageView;
  if (picture) {
    put(at, picture, kGap, 0, whole(h_.imageViewHeight));
  } else {
    at.y += kGap + whole(h_.imageViewHeight);
  }
  if (e_.pageIndicator) put(at, e_.pageIndicator, kGap, kGap, whole(h_.indicatorHeight));
}

void PopupLayout::coupon(Cursor& at) const {
  if (!e_.couponLabel) return;
  e_.couponLabel->shrinkToFit(at.width - 2 * kCouponInset, kSmallestCode);
  const int label =
      std::max(whole(h_.couponLabelHeight), e_.couponLabel->heightForWidth(at.width - 2 * kGap));
  put(at, e_.couponLabel, kGap, kGap, label);
  const int button = std::max(whole(h_.couponCopyButtonHeight),
                              e_.copyButton->heightFor(at.width - 2 * kCopyInset));
  put(at, e_.copyButton, kGap, kCopyInset, button);
}

void PopupLayout::score(Cursor& at) const {
  const int value =
      std::max(whole(h_.scoreValueLabelHeight), e_.scoreValueLabel->heightForWidth(at.width));
  const int third = (at.width - 2 * kGap) / 3;  // the bounds and the score share the row
  e_.scoreValueLabel->shrinkToFit(third, kSmallestBound);
  put(at, e_.scoreValueLabel, kWideGap, 0, value);
  const QRect row = e_.scoreValueLabel->geometry();
  const auto ends = {std::pair(e_.sliderMinLabel, false), std::pair(e_.sliderMaksLabel, true)};
  for (const auto& [label, trailing] : ends) {
    label->shrinkToFit(third - kGap, kSmallestBound);
    const int width = label->naturalWidth() + 2;
    const QRect place(trailing ? at.width - kGap - width : kGap, row.y(), width, row.height());
    label->setGeometry(
        QStyle::visualRect(label->layoutDirection(), QRect(0, 0, at.width, 1), place));
  }
  put(at, e_.slider, kWideGap, kGap, whole(h_.sliderHeight));
  const QRect bounds = e_.slider->geometry();
  e_.slider->setGeometry(bounds.adjusted(0, -CustomSlider::room, 0, CustomSlider::room));
}

void PopupLayout::body(Cursor& at) const {
  const bool asked = e_.popupQuestion && !e_.popupQuestion->text().isEmpty();
  if (asked || !e_.buttonsTableview) {
    const int height =
        heightOf(*e_.popupQuestion, at.width - 2 * kTextInset, h_.popupQuestionHeight);
    put(at, e_.popupQuestion, kWideGap, kTextInset, height);
  }
  if (e_.slider) return score(at);
  const int inside = at.width - 2 * kGap;
  if (e_.emojiCollectionView) {
    const int cells = e_.emojiCollectionView->heightFor(inside);
    put(at, e_.emojiCollectionView, kGap, kGap, std::max(whole(h_.emojiCellSize), cells));
  }
  if (!e_.buttonsTableview) return;
  const int rows = e_.buttonsTableview->contentHeightFor(inside);
  put(at, e_.buttonsTableview, kGap, kGap, h_.listHeightFor(rows));
}

/// Places the pieces of the block within it and returns the height that it has when open.
int PopupLayout::freeText(int width) const {
  int y = 0;
  const bool asked = !e_.textFieldLabel->text().isEmpty();
  if (asked) {
    const int label = heightOf(*e_.textFieldLabel, width, h_.textFieldHeight);
    e_.textFieldLabel->setGeometry(0, kGap, width, label);
    y = kGap + label;
  }
  const int line = QFontMetrics(e_.textField->font()).height() + kTextRoom;
  const int field = std::max(whole(h_.textFieldLabelHeight), line);
  e_.textField->setGeometry(0, y, width, field);
  y += field + kCounterGap;
  const int least = e_.textFieldCountLabel->heightForWidth(kCounterWidth);
  const int wide = std::max(kCounterWidth, e_.textFieldCountLabel->naturalWidth() + 2);
  const int block = std::max(y + least, whole(h_.openFieldHeight(asked)));
  const QRect counter(width - wide, y, wide, block - y);
  e_.textFieldCountLabel->setGeometry(
      QStyle::visualRect(e_.textField->layoutDirection(), QRect(0, 0, width, block), counter));
  return block;
}

int PopupLayout::arrange(int width, double openness) {
  Cursor at{width};
  title(at);
  pictures(at);
  const int text =
      heightOf(*e_.popupDescription, width - 2 * kTextInset, h_.popupDescriptionHeight);
  put(at, e_.popupDescription, kGap, kTextInset, text);
  coupon(at);
  body(at);
  at.y += kGap;
  if (e_.fieldView) {
    const int inside = width - 2 * kGap;
    const int block = whole(freeText(inside) * openness);
    e_.fieldView->setGeometry(kGap, at.y, inside, block);
    at.y += block;
  }
  const int submit = e_.submitButton ? std::max(whole(h_.submitButtonHeight),
                                                e_.submitButton->heightFor(width - 2 * kGap))
                                     : 0;
  const double spared = keepsFreeTextRoom_ ? 0 : (1 - openness) * h_.fieldViewHeight;
  const int target = whole(h_.totalHeight - spared);
  const int height = std::max(target, at.y + kGap + submit + kGap);
  if (e_.submitButton) {
    e_.submitButton->setGeometry(kGap, height - kGap - submit, width - 2 * kGap, submit);
  }
  if (e_.buttonsTableview && !e_.buttonsTableview->isScrollable() && h_.isPlain) {
    // What there is to spare goes above the buttons, which are as far from the foot as from the
    // sides.
    const int foot = submit > 0 ? submit + 2 * kGap : kGap;
    e_.buttonsTableview->moveToFoot(height - foot);
  }
  return height;
}

}  // namespace kifo
