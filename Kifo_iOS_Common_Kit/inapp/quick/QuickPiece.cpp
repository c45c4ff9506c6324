#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPiece.h"

#include <map>
#include <optional>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPictures.h"

namespace kifo {
namespace {

using Part = QuickPiece::Part;

QRectF rect(const PopupBox& box) {
  return QRectF(box.x, box.y, box.width, box.height);
}

bool isText(PopupPiece piece) {
  switch (piece) {
    case PopupPiece::title:
    case PopupPiece::description:
    case PopupPiece::question:
    case PopupPiece::fieldLabel:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::optional<PopupPiece> QuickPiece::pieceOf(Part part) {
  static const std::map<Part, PopupPiece> pieces = {
      {Part::Title, PopupPiece::title},
      {Part::Picture, PopupPiece::picture},
      {Part::Carousel, PopupPiece::picture},
      {Part::Pages, PopupPiece::pageIndicator},
      {Part::Description, PopupPiece::description},
      {Part::Coupon, PopupPiece::couponLabel},
      {Part::Copy, PopupPiece::copyButton},
      {Part::Question, PopupPiece::question},
      {Part::List, PopupPiece::list},
      {Part::ListRow, PopupPiece::list},
      {Part::Emojis, PopupPiece::emojis},
      {Part::Emoji, PopupPiece::emojis},
      {Part::EmojiText, PopupPiece::emojis},
      {Part::Minimum, PopupPiece::minimum},
      {Part::Score, PopupPiece::score},
      {Part::Maximum, PopupPiece::maximum},
      {Part::Slider, PopupPiece::slider},
      {Part::FieldView, PopupPiece::fieldView},
      {Part::FieldLabel, PopupPiece::fieldLabel},
      {Part::Field, PopupPiece::field},
      {Part::Counter, PopupPiece::counter},
      {Part::Submit, PopupPiece::submit},
  };
  const auto found = pieces.find(part);
  return found == pieces.end() ? std::nullopt : std::optional(found->second);
}

QuickPiece::QuickPiece(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void QuickPiece::setPart(Part part) {
  part_ = part;
  Q_EMIT partChanged();
}

void QuickPiece::setRow(int row) {
  row_ = row;
  Q_EMIT rowChanged();
}

void QuickPiece::componentComplete() {
  QQuickPaintedItem::componentComplete();
  for (QQuickItem* item = parentItem(); item && !popup_; item = item->parentItem()) {
    popup_ = qobject_cast<QuickPopup*>(item);
  }
  if (!popup_) return;
  connect(popup_, &QuickPopup::laidOut, this, &QuickPiece::follow);
  connect(popup_, &QuickPopup::changed, this, &QuickPiece::refresh);
  connect(popup_, &QuickPopup::remade, this, &QuickPiece::refresh);
  connect(popup_, &QuickPopup::pieceChanged, this, [this](PopupPiece piece) {
    if (pieceOf(part_) == piece) refresh();
  });
  const bool isEdges = part_ == PanelEdges || part_ == ListEdges;
  if (isEdges) connect(popup_, &QuickPopup::scrolled, this, [this] { update(); });
  follow();
}

void QuickPiece::follow() {
  const QRectF place = box();
  setPosition(place.topLeft());
  setSize(place.size());
  setVisible(isThere());
  Q_EMIT changed();
}

void QuickPiece::refresh() {
  setVisible(isThere());
  update();
  Q_EMIT changed();
}

QRectF QuickPiece::box() const {
  const PopupParts& p = parts();
  const PanelPlace& place = p.place();
  switch (part_) {
    case Shadow:
      return p.extent();
    case Panel:
      return rect(place.panel);
    case Body:
      return {0, 0, 1.0 * place.panel.width, 1.0 * place.panel.height};
    case Close:
      return rect(place.close);
    case PanelScroll:
    case PanelEdges:
      return rect(place.scroll);
    case ListEdges:
      return rect(p.boxes().of(PopupPiece::list));
    case ListRow:
    case Emoji:
      return row_ < popup_->rows() ? parts().rows()[static_cast<std::size_t>(row_)].box : QRectF();
    case EmojiText: {
      const PopupBox& emojis = p.boxes().of(PopupPiece::emojis);
      return {0, 1.0 * emojis.y, p.place().panel.width * 1.0, emojis.height + 60.0};
    }
    case Slider:
      return rect(p.boxes().of(PopupPiece::slider))
          .adjusted(0, -ScoreLook::margin, 0, ScoreLook::margin);
    case Submit:
      return rect(place.isSubmitFixed ? place.submit : p.boxes().of(PopupPiece::submit));
    default:
      return rect(p.boxes().of(*pieceOf(part_)));
  }
}

bool QuickPiece::isThere() const {
  const PopupParts& p = parts();
  switch (part_) {
    case Picture:
      return p.has(PopupPiece::picture) && !p.has(PopupPiece::pageIndicator);
    case Carousel:
      return p.has(PopupPiece::pageIndicator);
    case List:
    case ListEdges:
      return p.has(PopupPiece::list) && popup_->rows() > 0;
    case EmojiText:
      return popup_->namedEmoji() >= 0;
    case FieldView:
      return p.has(PopupPiece::fieldView) && popup_->openness() > 0;
    default:
      break;
  }
  const auto piece = pieceOf(part_);
  return !piece || (p.has(*piece) && !(isText(*piece) && p.isEmpty(*piece)));
}

QString QuickPiece::label() const {
  if (!popup_) return {};
  const PopUpTexts& texts = parts().theme().options.texts;
  const PopupContent& content = parts().content();
  switch (part_) {
    case Body:
      return content.name;
    case Close:
      return texts.close;
    case Picture:
      return texts.image;
    case Carousel:
    case Pages:
      return texts.page.arg(popup_->state().currentIndex + 1).arg(popup_->pictures().pages());
    case List:
    case Emojis:
      return content.groupName;
    case ListRow:
    case Emoji:
      return row_ < popup_->rows() ? parts().rows()[static_cast<std::size_t>(row_)].text.name
                                   : QString();
    case Slider:
      return content.sliderName;
    case Field:
      return content.fieldName;
    case Copy: {
      const auto& item = popup_->state().appCommunicationItem;
      if (!popup_->isCopied() || content.copy.caption.isEmpty()) return content.copy.name;
      return PopupContent::copied(*item->coupon).caption;
    }
    case Submit:
      return content.submit.name;
    case EmojiText:
      return popup_->namedEmoji() < 0
                 ? QString()
                 : parts().rows()[static_cast<std::size_t>(popup_->namedEmoji())].text.caption;
    default: {
      const auto piece = pieceOf(part_);
      return piece ? parts().text(*piece) : QString();
    }
  }
}

QString QuickPiece::hint() const {
  if (!popup_ || part_ != Submit || !parts().submitLook().isDimmed) return {};
  return parts().theme().options.texts.chooseFirst;
}

bool QuickPiece::isOption() const {
  return part_ == Emoji || (part_ == ListRow && popup_ && !popup_->isPlain());
}

bool QuickPiece::isChosen() const {
  return popup_ && isOption() && row_ < popup_->rows() && popup_->isChosen(row_);
}

}  // namespace kifo
