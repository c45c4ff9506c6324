#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupLayout.h"

#include <QFontMetrics>

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

QWidget* PopupLayout::widgetOf(PopupPiece piece) const {
  switch (piece) {
    case PopupPiece::picture:
      return e_.popupImageViewList ? static_cast<QWidget*>(e_.popupImageViewList)
                                   : e_.popupImageView;
    case PopupPiece::pageIndicator:
      return e_.pageIndicator;
    case PopupPiece::copyButton:
      return e_.copyButton;
    case PopupPiece::list:
      return e_.buttonsTableview;
    case PopupPiece::emojis:
      return e_.emojiCollectionView;
    case PopupPiece::slider:
      return e_.slider;
    case PopupPiece::fieldView:
      return e_.fieldView;
    case PopupPiece::field:
      return e_.textField;
    case PopupPiece::submit:
      return e_.submitButton;
    default:
      return labelOf(piece);
  }
}

TextLabel* PopupLayout::labelOf(PopupPiece piece) const {
  switch (piece) {
    case PopupPiece::title:
      return e_.popupTitle;
    case PopupPiece::description:
      return e_.popupDescription;
    case PopupPiece::couponLabel:
      return e_.couponLabel;
    case PopupPiece::question:
      return e_.popupQuestion;
    case PopupPiece::minimum:
      return e_.sliderMinLabel;
    case PopupPiece::score:
      return e_.scoreValueLabel;
    case PopupPiece::maximum:
      return e_.sliderMaksLabel;
    case PopupPiece::fieldLabel:
      return e_.textFieldLabel;
    case PopupPiece::counter:
      return e_.textFieldCountLabel;
    default:
      return nullptr;
  }
}

bool PopupLayout::has(PopupPiece piece) const {
  return widgetOf(piece) != nullptr;
}

bool PopupLayout::isEmpty(PopupPiece piece) const {
  const TextLabel* label = labelOf(piece);
  return !label || label->text().isEmpty();
}

int PopupLayout::heightFor(PopupPiece piece, int width) const {
  switch (piece) {
    case PopupPiece::copyButton:
      return e_.copyButton->heightFor(width);
    case PopupPiece::submit:
      return e_.submitButton->heightFor(width);
    case PopupPiece::list:
      return e_.buttonsTableview->contentHeightFor(width);
    case PopupPiece::emojis:
      return e_.emojiCollectionView->heightFor(width);
    case PopupPiece::field:
      return QFontMetrics(e_.textField->font()).height();
    default:
      return labelOf(piece)->heightForWidth(width);
  }
}

int PopupLayout::naturalWidth(PopupPiece piece) const {
  return labelOf(piece)->naturalWidth();
}

void PopupLayout::shrinkToFit(PopupPiece piece, int width, int leastPixels) const {
  labelOf(piece)->shrinkToFit(width, leastPixels);
}

PopupBoxes PopupLayout::arrange(const PopupHeights& heights, const PopupArrangement& how) const {
  const PopupBoxes boxes = arrangePieces(*this, heights, how);
  if (e_.buttonsTableview) {
    e_.buttonsTableview->setAtFoot(boxes.isListAtFoot);
    // Assistive technology would read an empty group.
    e_.buttonsTableview->setHidden(heightFor(PopupPiece::list, boxes.of(PopupPiece::list).width) ==
                                   0);
  }
  for (std::size_t i = 0; i < kPopupPieces; ++i) {
    const auto piece = static_cast<PopupPiece>(i);
    QWidget* widget = widgetOf(piece);
    if (!widget) continue;
    const int margin = piece == PopupPiece::slider ? ScoreLook::margin : 0;
    const PopupBox& box = boxes.of(piece);
    widget->setGeometry(box.x, box.y - margin, box.width, box.height + 2 * margin);
  }
  return boxes;
}

}  // namespace kifo
