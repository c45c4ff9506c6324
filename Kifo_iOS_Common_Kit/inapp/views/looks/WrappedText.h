#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>
#include <QTextLayout>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QPainter;

namespace kifo {

/// A paragraph of plain text that breaks where it must, also inside a long word, and that knows how
/// high it is at a given width. The last layout is kept, so that asking again costs nothing.
///
/// Centred text of up to four lines has lines of about the same length; longer text is aligned to
/// the leading edge. Text beyond what `shownText` keeps is not laid out.
///
/// **Threading:** UI thread only.
class KIFO_SHARED WrappedText {
 public:
  enum class Alignment { center, leading, trailing };
  /// Where a text that is lower than its place stands in it.
  enum class Vertical { middle, top, bottom };

  void setText(const QString& text);
  void setFont(const QFont& font);
  void setAlignment(Alignment alignment, Qt::LayoutDirection direction);

  [[nodiscard]] const QFont& font() const { return font_; }
  [[nodiscard]] bool isEmpty() const { return text_.isEmpty(); }

  /// Logical pixels, 0 for an empty text.
  [[nodiscard]] int heightFor(int width) const;
  /// The least width at which the text stands on one line.
  [[nodiscard]] int naturalWidth() const;

  /// Makes the font smaller, but not below `leastPixels`, until the text fits on one line of
  /// `width`.
  void shrinkToFit(int width, double leastPixels);

  /// Draws the text in `rect`; only the lines that `clip` touches cost anything.
  void draw(QPainter& painter, const QRectF& rect, const QColor& color, const QRectF& clip,
            Vertical vertical = Vertical::middle) const;

 private:
  void layOut(int width) const;
  void breakLines(QTextLayout& layout, int width, QTextOption::WrapMode mode,
                  Qt::Alignment alignment) const;
  [[nodiscard]] int balancedWidth(int width, int lines) const;
  [[nodiscard]] Qt::Alignment visualAlignment(Alignment alignment) const;
  void forget() { width_ = -1; }

  QString given_;
  QString text_;  ///< As it is shown.
  QFont font_;
  Alignment alignment_ = Alignment::center;
  Qt::LayoutDirection direction_ = Qt::LeftToRight;
  mutable QTextLayout layout_;
  mutable int width_ = -1;  ///< For which `layout_` holds; -1 for none.
  mutable int indent_ = 0;  ///< Of the lines, which may be laid out in less than the width.
  mutable qreal height_ = 0;
};

}  // namespace kifo
