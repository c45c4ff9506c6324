#include "Kifo_iOS_Common_Kit/inapp/views/shared/WrappedText.h"

#include <algorithm>
#include <cmath>

#include <QFontMetrics>
#include <QPainter>
#include <QTextOption>

namespace kifo {

void WrappedText::setText(const QString& text) {
  text_ = text;
  forget();
}

void WrappedText::setFont(const QFont& font) {
  font_ = font;
  forget();
}

void WrappedText::setAlignment(Alignment alignment, Qt::LayoutDirection direction) {
  if (alignment == alignment_ && direction == direction_) return;
  alignment_ = alignment;
  direction_ = direction;
  forget();
}

int WrappedText::heightFor(int width) const {
  if (text_.isEmpty()) return 0;
  layOut(width);
  return static_cast<int>(std::ceil(height_));
}

int WrappedText::naturalWidth() const {
  return text_.isEmpty() ? 0 : QFontMetrics(font_).horizontalAdvance(text_) + 1;
}

Qt::Alignment WrappedText::visualAlignment() const {
  if (alignment_ == Alignment::center) return Qt::AlignHCenter;
  const bool left = (alignment_ == Alignment::leading) == (direction_ != Qt::RightToLeft);
  return (left ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignAbsolute;
}

void WrappedText::layOut(int width) const {
  width = std::max(width, 1);
  if (width == width_) return;
  width_ = width;
  QString broken = text_;
  broken.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  broken.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
  QTextOption option(visualAlignment());
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(Qt::LayoutDirectionAuto);
  layout_.clearLayout();
  layout_.setText(broken);
  layout_.setFont(font_);
  layout_.setTextOption(option);
  layout_.setCacheEnabled(true);
  height_ = 0;
  layout_.beginLayout();
  for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
    line.setLineWidth(width);
    line.setPosition({0, height_});
    height_ += line.height();
  }
  layout_.endLayout();
}

void WrappedText::draw(QPainter& painter, const QRectF& rect, const QColor& color,
                       const QRectF& clip, int lowest) const {
  if (text_.isEmpty()) return;
  layOut(static_cast<int>(rect.width()));
  painter.setPen(color);
  const qreal y = rect.y() + std::min<qreal>(std::floor((rect.height() - height_) / 2), lowest);
  layout_.draw(&painter, {rect.x(), y}, {}, clip);
}

}  // namespace kifo
