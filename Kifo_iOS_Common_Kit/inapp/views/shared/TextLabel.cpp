#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"

namespace kifo {
TextLabel::TextLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFocusPolicy(Qt::NoFocus);
  setMinimumSize(0, 0);
}

void TextLabel::setFace(const QFont& font, const QColor& color, Alignment alignment) {
  font_ = shrunk_ = font;
  color_ = color;
  alignment_ = alignment;
  update();
}

void TextLabel::setLook(const TextLook& look) {
  setFace(look.font, look.color, look.alignment);
  setVertical(look.vertical);
  setDigits(look.isDigits);
  setText(look.text);
}

void TextLabel::setVertical(WrappedText::Vertical vertical) {
  vertical_ = vertical;
  update();
}

/// The text and the layout direction are the label's own, which anybody may change.
const WrappedText& TextLabel::content() const {
  content_.setText(text());
  content_.setFont(shrunk_);
  content_.setAlignment(alignment_, layoutDirection());
  return content_;
}

int TextLabel::naturalWidth() const {
  return content().naturalWidth();
}

int TextLabel::heightForWidth(int width) const {
  if (digits_) return QFontMetrics(shrunk_).capHeight() + 3;
  const QMargins margins = contentsMargins();
  return content().heightFor(width - margins.left() - margins.right()) + margins.top() +
         margins.bottom();
}

void TextLabel::shrinkToFit(int width, double leastPixels) {
  shrunk_ = font_;
  content();
  content_.shrinkToFit(width, leastPixels);
  shrunk_ = content_.font();
  update();
}

void TextLabel::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  content().draw(painter, contentsRect(), color_, event->rect(), vertical_);
}

}  // namespace kifo
