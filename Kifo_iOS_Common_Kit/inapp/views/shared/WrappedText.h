#pragma once

#include <climits>

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>
#include <QTextLayout>

class QPainter;

namespace kifo {

/// A paragraph of plain text that breaks where it must, also inside a long word, and that knows how
/// high it is at a given width. The last layout is kept, so that asking again costs nothing.
///
/// **Threading:** UI thread only.
class WrappedText {
 public:
  enum class Alignment { center, leading, trailing };

  void setText(const QString& text);
  void setFont(const QFont& font);
  void setAlignment(Alignment alignment, Qt::LayoutDirection direction);

  [[nodiscard]] const QString& text() const { return text_; }
  [[nodiscard]] const QFont& font() const { return font_; }

  /// Logical pixels, 0 for an empty text.
  [[nodiscard]] int heightFor(int width) const;
  /// Width of the text on one line.
  [[nodiscard]] int naturalWidth() const;

  /// Draws the text in the middle of the height of `rect`, or at most `lowest` below its top
  /// edge; only the lines that `clip` touches cost anything.
  void draw(QPainter& painter, const QRectF& rect, const QColor& color, const QRectF& clip,
            int lowest = INT_MAX) const;

 private:
  void layOut(int width) const;
  [[nodiscard]] Qt::Alignment visualAlignment() const;
  void forget() { width_ = -1; }

  QString text_;
  QFont font_;
  Alignment alignment_ = Alignment::center;
  Qt::LayoutDirection direction_ = Qt::LeftToRight;
  mutable QTextLayout layout_;
  mutable int width_ = -1;  ///< For which `layout_` holds; -1 for none.
  mutable qreal height_ = 0;
};

}  // namespace kifo
