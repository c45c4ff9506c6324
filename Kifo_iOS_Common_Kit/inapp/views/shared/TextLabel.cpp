#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

#include <algorithm>
#include <cmath>

#include <QFontInfo>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>

namespace kifo {
namespace {

QFont scaled(QFont font, double scale) {
  if (font.pixelSize() > 0) {
    font.setPixelSize(std::max(1, static_cast<int>(std::floor(font.pixelSize() * scale))));
  } else {
    font.setPointSizeF(std::max(1.0, font.pointSizeF() * scale));
  }
  return font;
}

}  // namespace

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
  const double least = leastPixels / std::max(QFontInfo(font_).pixelSize(), 1);
  const int natural = least < 1 ? naturalWidth() : 0;
  if (natural > width) shrunk_ = scaled(font_, std::max({least, 0.1, (width - 1.0) / natural}));
  update();
}

void TextLabel::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  content().draw(painter, contentsRect(), color_, event->rect(), vertical_);
}

}  // namespace kifo
