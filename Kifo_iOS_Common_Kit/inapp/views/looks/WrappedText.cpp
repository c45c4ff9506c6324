#include "Kifo_iOS_Common_Kit/inapp/views/looks/WrappedText.h"

#include <algorithm>
#include <cmath>

#include <QFontInfo>
#include <QPainter>
#include <QTextOption>

#include "Kifo_iOS_Common_Kit/inapp/popup/ShownText.h"

namespace kifo {
namespace {

constexpr int kMostCentredLines = 4;
constexpr int kWidest = 1 << 20;  ///< Logical pixels; no text is wider.
constexpr int kTopInset = 4;      ///< Of a text at the top or the bottom of its place.

QFont scaled(QFont font, double scale) {
  if (font.pixelSize() > 0) {
    font.setPixelSize(std::max(1, static_cast<int>(std::floor(font.pixelSize() * scale))));
  } else {
    font.setPointSizeF(std::max(1.0, font.pointSizeF() * scale));
  }
  return font;
}

QString prepared(const QString& text) {
  QString shown = QString::fromStdString(shownText(text.toStdString()));
  shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  shown.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
  return shown;
}

}  // namespace

void WrappedText::setText(const QString& text) {
  if (text == given_) return;
  given_ = text;
  text_ = prepared(text);
  forget();
}

void WrappedText::setFont(const QFont& font) {
  if (font == font_) return;
  font_ = font;
  forget();
}

void WrappedText::setAlignment(Alignment alignment, Qt::LayoutDirection direction) {
  if (alignment == alignment_ && direction == direction_) return;
  alignment_ = alignment;
  direction_ = direction;
  forget();
}

void WrappedText::shrinkToFit(int width, double leastPixels) {
  const double least = leastPixels / std::max(QFontInfo(font_).pixelSize(), 1);
  const int natural = least < 1 ? naturalWidth() : 0;
  if (natural > width) setFont(scaled(font_, std::max({least, 0.1, (width - 1.0) / natural})));
}

int WrappedText::heightFor(int width) const {
  if (text_.isEmpty()) return 0;
  layOut(width);
  return static_cast<int>(std::ceil(height_));
}

/// A line of right-to-left text needs a fraction more than its advances sum up to.
int WrappedText::naturalWidth() const {
  if (text_.isEmpty()) return 0;
  QTextLayout layout;
  breakLines(layout, kWidest, QTextOption::WrapAtWordBoundaryOrAnywhere, Qt::AlignLeft);
  const int lines = layout.lineCount();
  double widest = 0;
  for (int line = 0; line < lines; ++line)
    widest = std::max(widest, layout.lineAt(line).naturalTextWidth());
  int width = static_cast<int>(std::ceil(widest)) + 1;
  const auto breaks = [&] {
    breakLines(layout, width, QTextOption::WrapAtWordBoundaryOrAnywhere, Qt::AlignLeft);
    return layout.lineCount() > lines;
  };
  for (int tries = 0; tries < 4 && breaks(); ++tries) ++width;
  return width;
}

Qt::Alignment WrappedText::visualAlignment(Alignment alignment) const {
  if (alignment == Alignment::center) return Qt::AlignHCenter;
  const bool left = (alignment == Alignment::leading) == (direction_ != Qt::RightToLeft);
  return (left ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignAbsolute;
}

void WrappedText::breakLines(QTextLayout& layout, int width, QTextOption::WrapMode mode,
                             Qt::Alignment alignment) const {
  QTextOption option(alignment);
  option.setWrapMode(mode);
  option.setTextDirection(Qt::LayoutDirectionAuto);
  if (layout.text() != text_) layout.setText(text_);
  if (layout.font() != font_) layout.setFont(font_);
  layout.setTextOption(option);
  layout.setCacheEnabled(true);
  double y = 0;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    line.setPosition({0, y});
    y += line.height();
  }
  layout.endLayout();
}

/// The least width at which the text has as many lines and no word is broken.
int WrappedText::balancedWidth(int width, int lines) const {
  QTextLayout trial;
  const auto fits = [&](int candidate) {
    breakLines(trial, candidate, QTextOption::WordWrap, Qt::AlignLeft);
    if (trial.lineCount() > lines) return false;
    for (int line = 0; line < trial.lineCount(); ++line)
      if (trial.lineAt(line).naturalTextWidth() > candidate) return false;
    return true;
  };
  int tooNarrow = width / (lines + 1);
  int fitting = width;
  while (fitting - tooNarrow > 2) {
    const int middle = (fitting + tooNarrow) / 2;
    (fits(middle) ? fitting : tooNarrow) = middle;
  }
  return std::min(fitting + 1, width);
}

void WrappedText::layOut(int width) const {
  width = std::max(width, 1);
  if (width == width_) return;
  width_ = width;
  indent_ = 0;
  constexpr auto kMode = QTextOption::WrapAtWordBoundaryOrAnywhere;
  layout_.clearLayout();
  breakLines(layout_, width, kMode, visualAlignment(alignment_));
  const int lines = layout_.lineCount();
  if (alignment_ == Alignment::center && lines > kMostCentredLines) {
    breakLines(layout_, width, kMode, visualAlignment(Alignment::leading));
  } else if (alignment_ == Alignment::center && lines > 1) {
    const int balanced = balancedWidth(width, lines);
    indent_ = (width - balanced) / 2;
    breakLines(layout_, balanced, kMode, Qt::AlignHCenter);
  }
  height_ = 0;
  for (int line = 0; line < layout_.lineCount(); ++line) height_ += layout_.lineAt(line).height();
}

void WrappedText::draw(QPainter& painter, const QRectF& rect, const QColor& color,
                       const QRectF& clip, Vertical vertical) const {
  if (text_.isEmpty()) return;
  layOut(static_cast<int>(rect.width()));
  painter.setPen(color);
  const qreal spare = rect.height() - height_;
  qreal y = std::floor(spare / 2);
  if (vertical == Vertical::top) y = std::min<qreal>(y, kTopInset);
  if (vertical == Vertical::bottom) y = std::max<qreal>(y, spare - kTopInset);
  layout_.draw(&painter, {rect.x() + indent_, rect.y() + y}, {}, clip);
}

}  // namespace kifo
