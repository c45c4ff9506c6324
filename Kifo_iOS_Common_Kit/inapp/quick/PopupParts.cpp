#include "Kifo_iOS_Common_Kit/inapp/quick/PopupParts.h"

#include <algorithm>
#include <utility>

#include <QFontMetrics>
#include <QPainter>
#include <QPalette>

namespace kifo {
namespace {

constexpr int kButtonInset = 3;  ///< Leaves a surface of 44 in a row of 50.
constexpr double kCopyRadius = 4;

void show(const OptionText& text, ButtonLook& look) {
  look.caption.setText(text.caption);
  look.surface = text.surface;
  look.text = text.text;
}

}  // namespace

PopupParts::PopupParts(const PopupState& state, const PopUpOptions& options, const QPalette& window,
                       Qt::LayoutDirection direction)
    : state_(state),
      isMirrored_(direction == Qt::RightToLeft),
      direction_(direction),
      theme_(PopupTheme::of(state.preferences, options, window)),
      content_(PopupContent::of(state, theme_)),
      copy_(theme_, TextRole::button, direction),
      submit_(theme_, TextRole::button, direction) {
  show(content_.copy, copy_);
  show(content_.submit, submit_);
  copy_.radius = kCopyRadius;
  submit_.isDimmed = state.waitsForChoice();
  makeTexts();
  makeRows();
}

void PopupParts::makeTexts() {
  setText(PopupPiece::title, content_.title);
  setText(PopupPiece::description, content_.description);
  setText(PopupPiece::question, content_.question);
  const auto& item = state_.appCommunicationItem;
  if (item && item->coupon) setText(PopupPiece::couponLabel, content_.coupon);
  if (state_.layoutKind == PopupType::score) {
    setText(PopupPiece::score, content_.score);
    setText(PopupPiece::minimum, content_.minimum);
    setText(PopupPiece::maximum, content_.maximum);
  }
  if (!state_.mayAskForFreeText()) return;
  setText(PopupPiece::fieldLabel, content_.fieldLabel);
  setText(PopupPiece::counter, PopupContent::counter(theme_, state_.freeText));
}

PopupParts::Row::Row(const PopupTheme& theme, const OptionText& option, PopupState::Button choice,
                     int row, Qt::LayoutDirection direction)
    : button(std::move(choice)),
      text(option),
      buttonLook(theme, TextRole::button, direction),
      optionLook(theme, option.surface),
      textLook(PopupContent::optionText(theme, optionLook, option)) {
  show(option, buttonLook);
  buttonLook.inset = kButtonInset;
  wrapped.setText(textLook.text);
  wrapped.setFont(textLook.font);
  wrapped.setAlignment(textLook.alignment, direction);
  emoji.substitute = EmojiLook::substituteOf(option.caption, row);
}

void PopupParts::makeRows() {
  const PopupState::Buttons& buttons = state_.options();
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (!buttons[i]) continue;
    rows_.emplace_back(theme_, content_.options[i], buttons[i], static_cast<int>(i), direction_);
  }
}

void PopupParts::setText(PopupPiece piece, const TextLook& look) {
  Text& text = texts_[piece];
  text.look = look;
  text.wrapped.setText(look.text);
  text.wrapped.setFont(look.font);
  text.wrapped.setAlignment(look.alignment, direction_);
}

QString PopupParts::text(PopupPiece piece) const {
  const auto found = texts_.find(piece);
  return found == texts_.end() ? QString() : found->second.look.text;
}

int PopupParts::marginOf(PopupPiece piece) const {
  return piece == PopupPiece::couponLabel ? content_.couponLook.margin() : 0;
}

void PopupParts::paintText(PopupPiece piece, QPainter& painter, const QRectF& bounds) const {
  const auto found = texts_.find(piece);
  if (found == texts_.end()) return;
  const int margin = marginOf(piece);
  const QRectF inside = bounds.adjusted(margin, margin, -margin, -margin);
  const Text& text = found->second;
  text.wrapped.draw(painter, inside, text.look.color, bounds, text.look.vertical);
}

void PopupParts::paintRowText(const Row& row, QPainter& painter, const QRectF& bounds) const {
  const QRect place = OptionLook::textRect(bounds.toRect(), isMirrored_);
  row.wrapped.draw(painter, place, row.textLook.color, bounds, row.textLook.vertical);
}

void PopupParts::arrange(const PopupBand& band, double openness) {
  const int width = panelWidth(theme_.options.screenWidth.value_or(band.width));
  boxes_ = arrangePieces(*this, PopupHeights::of(state_),
                         {.width = width,
                          .openness = openness,
                          .keepsFreeTextRoom = theme_.options.keepsFreeTextRoom,
                          .isMirrored = isMirrored_});
  place_ = placePanel(band, width, boxes_, has(PopupPiece::submit), isMirrored_);
  const bool isList = has(PopupPiece::list);
  const PopupBox& box = boxes_.of(isList ? PopupPiece::list : PopupPiece::emojis);
  const int count = static_cast<int>(rows_.size());
  const auto boxes =
      isList ? rowBoxes(
                   count, [this](int row, int across) { return rowHeight(row, across); }, box,
                   boxes_.isListAtFoot, isMirrored_)
             : emojiBoxes(count, box.width, isMirrored_);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    rows_[i].box = QRectF(boxes[i].x, boxes[i].y, boxes[i].width, boxes[i].height);
  }
}

QRectF PopupParts::extent() const {
  const PopupBox& panel = place_.panel;
  return QRectF(panel.x, panel.y, panel.width, panel.height)
      .adjusted(-surround, -surround, surround, surround);
}

int PopupParts::rowHeight(int row, int width) const {
  const Row& each = rows_[static_cast<std::size_t>(row)];
  const int needed =
      state_.popupType == PopupType::popup
          ? each.buttonLook.heightFor(width)
          : OptionLook::heightFor(each.wrapped.heightFor(OptionLook::textWidth(width)));
  return std::max(static_cast<int>(state_.cellHeight), needed);
}

bool PopupParts::has(PopupPiece piece) const {
  const auto kind = state_.layoutKind;
  const PopupPreferences& p = state_.preferences;
  switch (piece) {
    case PopupPiece::picture:
      return p.image || !p.images.empty();
    case PopupPiece::pageIndicator:
      return p.images.size() > 1;
    case PopupPiece::copyButton:
      return texts_.contains(PopupPiece::couponLabel);
    case PopupPiece::list:
      return kind != PopupType::score && kind != PopupType::openEnded && kind != PopupType::emoji;
    case PopupPiece::emojis:
      return kind == PopupType::emoji;
    case PopupPiece::slider:
      return kind == PopupType::score;
    case PopupPiece::fieldView:
    case PopupPiece::field:
      return texts_.contains(PopupPiece::counter);
    case PopupPiece::submit:
      return p.submitButton != nullptr;
    default:
      return texts_.contains(piece);
  }
}

bool PopupParts::isEmpty(PopupPiece piece) const {
  return text(piece).isEmpty();
}

int PopupParts::heightFor(PopupPiece piece, int width) const {
  const int count = static_cast<int>(rows_.size());
  switch (piece) {
    case PopupPiece::copyButton:
      return copy_.heightFor(width);
    case PopupPiece::submit:
      return submit_.heightFor(width);
    case PopupPiece::list:
      return rowsHeight(
          count, [this](int row, int across) { return rowHeight(row, across); }, width);
    case PopupPiece::emojis:
      return emojisHeight(count, width);
    case PopupPiece::field:
      return QFontMetrics(theme_.font(TextRole::field)).height();
    default:
      break;
  }
  const Text& text = texts_.at(piece);
  const int margin = marginOf(piece);
  return text.look.heightFor(text.wrapped, width - 2 * margin) + 2 * margin;
}

int PopupParts::naturalWidth(PopupPiece piece) const {
  return texts_.at(piece).wrapped.naturalWidth();
}

void PopupParts::shrinkToFit(PopupPiece piece, int width, int leastPixels) const {
  const Text& text = texts_.at(piece);
  text.wrapped.setFont(text.look.font);
  text.wrapped.shrinkToFit(width, leastPixels);
}

}  // namespace kifo
