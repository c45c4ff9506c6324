#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupLabel.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace kifo {
namespace {

WrappedText::Alignment toWrapped(Qt::Alignment alignment) {
  if (alignment & Qt::AlignLeft) return WrappedText::Alignment::leading;
  if (alignment & Qt::AlignRight) return WrappedText::Alignment::trailing;
  return WrappedText::Alignment::center;
}

}  // namespace

KifoPopupLabel::KifoPopupLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFocusPolicy(Qt::NoFocus);
}

void KifoPopupLabel::setLook(const QFont& font, const QColor& color, Qt::Alignment alignment) {
  font_ = font;
  color_ = color;
  alignment_ = alignment;
  update();
}

int KifoPopupLabel::naturalWidth() const {
  WrappedText line;
  line.setText(text());
  line.setFont(font_);
  return line.naturalWidth();
}

QFont KifoPopupLabel::fontFor(int width) const {
  const int natural = minimumScale_ < 1 ? naturalWidth() : 0;
  if (natural <= width) return font_;
  const double scale = std::max({minimumScale_, 0.1, double(width - 1) / natural});
  QFont smaller = font_;
  if (font_.pixelSize() > 0) {
    smaller.setPixelSize(std::max(1, static_cast<int>(std::floor(font_.pixelSize() * scale))));
  } else {
    smaller.setPointSizeF(std::max(1.0, font_.pointSizeF() * scale));
  }
  return smaller;
}

const WrappedText& KifoPopupLabel::wrapped(int width) const {
  const QFont font = fontFor(width);
  if (wrapped_.text() != text()) wrapped_.setText(text());
  if (wrapped_.font() != font) wrapped_.setFont(font);
  return wrapped_;
}

int KifoPopupLabel::heightForWidth(int width) const {
  return wrapped(width).heightFor(width);
}

void KifoPopupLabel::paintEvent(QPaintEvent* event) {
  wrapped_.setAlignment(toWrapped(alignment_), layoutDirection());
  QPainter painter(this);
  wrapped(width()).draw(painter, rect(), color_, event->rect());
}

}  // namespace kifo
