#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupLabel.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>

namespace kifo {
namespace {

constexpr int kNearTop = 4;

}  // namespace

PopupLabel::PopupLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setMinimumSize(0, 0);
}

void PopupLabel::setLabel(const QString& text) {
  if (text == content_.text()) return;
  content_.setText(text);
  setText(text);
  update();
}

void PopupLabel::setFace(const QFont& font, const QColor& color, Alignment alignment) {
  color_ = color;
  alignment_ = alignment;
  wanted_ = font;
  content_.setFont(font);
  realign();
}

int PopupLabel::heightFor(int width) const {
  if (digits_) return QFontMetrics(content_.font()).capHeight() + 3;
  return content_.heightFor(width);
}

void PopupLabel::shrinkToFit(int width, int pixels) {
  QFont font = wanted_;
  content_.setFont(font);
  while (content_.naturalWidth() > width && font.pixelSize() > pixels) {
    font.setPixelSize(font.pixelSize() - 1);
    content_.setFont(font);
  }
  update();
}

void PopupLabel::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  content_.draw(painter, rect(), color_, event->rect(), nearTop_ ? kNearTop : INT_MAX);
}

void PopupLabel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LayoutDirectionChange) realign();
  QLabel::changeEvent(event);
}

void PopupLabel::realign() {
  content_.setAlignment(alignment_, layoutDirection());
  update();
}

}  // namespace kifo
