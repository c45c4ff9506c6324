#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <cmath>

namespace kifo {
namespace {

// Lays the lines of `layout` below each other in `width` and returns the height they take.
double arrange(QTextLayout& layout, int width) {
  double height = 0;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(std::max(1, width));
    line.setPosition({0, height});
    height += line.height();
  }
  layout.endLayout();
  return height;
}

QTextOption optionFor(const QString& text, Qt::Alignment alignment) {
  QTextOption option(alignment);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  return option;
}

QString withLines(QString text) {
  return text.replace(QLatin1Char('\n'), QChar::LineSeparator);
}

}  // namespace

KifoPopupLabel::KifoPopupLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFocusPolicy(Qt::NoFocus);
}

void KifoPopupLabel::setLook(const QFont& font, const QColor& color, Qt::Alignment alignment) {
  font_ = font;
  color_ = color;
  alignment_ = alignment & Qt::AlignHorizontal_Mask;
  update();
}

int KifoPopupLabel::naturalWidth() const {
  return QFontMetrics(font_).boundingRect(QRect(), Qt::AlignLeft, text()).width() + 1;
}

QFont KifoPopupLabel::fontFor(int width) const {
  const int natural = naturalWidth();
  if (natural <= width || minimumScale_ >= 1 || natural <= 0) return font_;
  const double scale = std::max(std::clamp(minimumScale_, 0.1, 1.0), double(width - 1) / natural);
  QFont smaller = font_;
  if (font_.pixelSize() > 0) {
    smaller.setPixelSize(std::max(1, static_cast<int>(std::floor(font_.pixelSize() * scale))));
  } else {
    smaller.setPointSizeF(std::max(1.0, font_.pointSizeF() * scale));
  }
  return smaller;
}

int KifoPopupLabel::heightForWidth(int width) const {
  if (text().isEmpty()) return 0;
  QTextLayout layout(withLines(text()), fontFor(width));
  layout.setTextOption(optionFor(text(), alignment_));
  return static_cast<int>(std::ceil(arrange(layout, width)));
}

void KifoPopupLabel::paintEvent(QPaintEvent* /*event*/) {
  QTextLayout layout(withLines(text()), fontFor(width()));
  layout.setTextOption(optionFor(text(), QStyle::visualAlignment(layoutDirection(), alignment_)));
  const double height = arrange(layout, width());
  QPainter painter(this);
  painter.setPen(color_);
  layout.draw(&painter, {0, std::max(0.0, (this->height() - height) / 2)});
}

}  // namespace kifo
