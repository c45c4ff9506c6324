// How the parts of a popup look; QuickPiece.cpp says where they stand and what they are called.
#include <algorithm>
#include <cmath>

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPictures.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickScroll.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelShadow.h"

namespace kifo {
namespace {

constexpr int kIndicatorInset = 2;
constexpr double kSmallFocusCorner = 8;

}  // namespace

void QuickPiece::paint(QPainter* painter) {
  if (!popup_) return;
  PopupParts& p = parts();
  const PopupTheme& theme = p.theme();
  const QRectF bounds = boundingRect();
  switch (part_) {
    case Shadow: {
      constexpr double around = PopupParts::surround;
      return PanelShadow::paint(*painter, bounds.adjusted(around, around, -around, -around),
                                kPanelCorner);
    }
    case Panel:
      return paintPanel(*painter, theme, bounds, false);
    case Body:
      if (!touch().hasKeyboard) return;
      painter->setRenderHint(QPainter::Antialiasing);
      return paintFocusRing(*painter, bounds, kPanelCorner, theme.panel, theme.accent);
    case Close:
      paintCloseButton(*painter, bounds, Qt::white, QColor(Qt::white), false, touch());
      return;
    case Picture:
    case Carousel:
      return paintPictures(*painter);
    case Pages:
      return paintPages(*painter, theme, bounds, popup_->pictures().pages(),
                        popup_->state().currentIndex, p.isMirrored());
    case Coupon:
      p.couponLook().paint(*painter, bounds);
      return p.paintText(PopupPiece::couponLabel, *painter, bounds);
    case Copy:
      return p.copyLook().paint(*painter, bounds, touch(), bounds);
    case Submit:
      return p.submitLook().paint(*painter, bounds, touch(), bounds);
    case ListRow: {
      const PopupParts::Row& each = p.rows()[static_cast<std::size_t>(row_)];
      if (popup_->isPlain()) return each.buttonLook.paint(*painter, bounds, touch(), bounds);
      each.optionLook.paint(*painter, bounds.toRect(), isChosen(), p.isMirrored(), touch());
      return p.paintRowText(each, *painter, bounds);
    }
    case Emoji: {
      EmojiLook look = p.rows()[static_cast<std::size_t>(row_)].emoji;
      look.isLoading = popup_->pictures().isEmojiLoading(row_);
      return look.paint(*painter, theme, bounds, isChosen(), touch());
    }
    case EmojiText:
      return paintEmojiText(*painter);
    case Field:
      return paintField(*painter, theme, bounds, false,
                        !childItems().isEmpty() && childItems().first()->hasActiveFocus());
    case PanelEdges:
    case ListEdges:
      return paintEdges(*painter);
    case PanelScroll:
    case List:
    case Emojis:
    case FieldView:
    case Slider:
      return;
    default:
      if (const auto piece = pieceOf(part_)) p.paintText(*piece, *painter, bounds);
  }
}

void QuickPiece::paintPictures(QPainter& painter) const {
  const PopupTheme& theme = parts().theme();
  const QRectF bounds = boundingRect();
  const bool isList = popup_->pictures().pages() > 1;
  const double offset = popup_->pictures().offset();
  const int first = static_cast<int>(std::floor(offset));
  const int last = static_cast<int>(std::ceil(offset));
  for (int page = std::max(first, 0);
       page <= last && (page == 0 || page < popup_->pictures().pages()); ++page) {
    const double pages = parts().isMirrored() ? offset - page : page - offset;
    painter.save();
    painter.translate(std::lround(pages * bounds.width()), 0);
    const QImage image = popup_->pictures().picture(page);
    const bool isLoading = popup_->pictures().isLoading(page);
    if (!image.isNull()) {
      paintPicture(painter, bounds, image);
    } else if (isList || popup_->state().preferences.image) {
      paintNoPicture(painter, theme, bounds, isLoading);
    }
    painter.restore();
    if (!isLoading || !image.isNull()) continue;
    painter.save();
    painter.translate(std::lround(pages * bounds.width()), 0);
    paintSpinner(painter, theme.ink, bounds, popup_->pictures().spinnerStep());
    painter.restore();
  }
  if (touch().hasKeyboard) {
    painter.setRenderHint(QPainter::Antialiasing);
    paintFocusRing(painter, bounds, kSmallFocusCorner, theme.panel, theme.accent);
  }
}

void QuickPiece::paintEdges(QPainter& painter) const {
  const auto* scroll = parentItem()->findChild<QuickScroll*>(
      part_ == PanelEdges ? QStringLiteral("panelScroll") : QStringLiteral("buttonsTableview"),
      Qt::FindDirectChildrenOnly);
  if (!scroll) return;
  const PopupTheme& theme = parts().theme();
  const QRectF bounds = boundingRect();
  const ScrollState state{scroll->contentY(), scroll->mostY(), scroll->height()};
  painter.save();
  paintScrollShade(painter, bounds, state, theme.panel, theme.ink, !scroll->wasScrolled());
  painter.restore();
  const int x = parts().isMirrored() ? kIndicatorInset
                                     : static_cast<int>(bounds.width()) -
                                           kScrollIndicatorThickness - kIndicatorInset;
  painter.translate(x, kIndicatorInset);
  const double height = std::max(bounds.height() - 2 * kIndicatorInset, 0.0);
  paintScrollIndicator(painter, QRectF(0, 0, kScrollIndicatorThickness, height), state, theme.ink,
                       scroll->strength());
}

/// The text of the emoji picked last, below it.
void QuickPiece::paintEmojiText(QPainter& painter) const {
  if (popup_->namedEmoji() < 0) return;
  const PopupParts::Row& emoji = parts().rows()[static_cast<std::size_t>(popup_->namedEmoji())];
  const PopupBox& row = parts().boxes().of(PopupPiece::emojis);
  const QRectF all(row.x, row.y, row.width, row.height);
  WrappedText text;
  text.setText(emoji.text.caption);
  text.setFont(parts().theme().font(TextRole::bound));
  const int wide = std::min(text.naturalWidth(), static_cast<int>(all.width()));
  const double middle = all.x() + emoji.box.center().x();
  const double left =
      std::clamp(middle - wide / 2.0, all.x(), std::max(all.right() - wide, all.x()));
  const QRectF place(std::floor(left), emoji.box.bottom(), wide, text.heightFor(wide));
  text.draw(painter, place, parts().theme().ink, place);
}

}  // namespace kifo
