#pragma once

#include <QLabel>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/WrappedText.h"

namespace kifo {

struct TextLook;

/// A text of a popup or an alert: plain (markup is shown, never followed), wrapped where it must,
/// and painted by itself, so that no style sheet of the host's can make it unreadable. Its
/// alignment follows its layout direction.
///
/// **Threading:** UI thread only.
class TextLabel : public QLabel {
  Q_OBJECT

 public:
  using Alignment = WrappedText::Alignment;

  explicit TextLabel(QWidget* parent = nullptr);

  void setFace(const QFont& font, const QColor& color, Alignment alignment = Alignment::center);
  void setLook(const TextLook& look);
  [[nodiscard]] QColor textColor() const { return color_; }

  /// The height that the text needs at this width.
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  /// The width of the text on one line.
  [[nodiscard]] int naturalWidth() const;
  /// Makes the type smaller, but not below `leastPixels`, until the text fits on one line of this
  /// width.
  void shrinkToFit(int width, double leastPixels);

  /// Where a text that is lower than its place stands in it: by default in the middle.
  void setVertical(WrappedText::Vertical vertical);
  /// The text is digits and needs no space for accents and descenders.
  void setDigits(bool digits) { digits_ = digits; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const WrappedText& content() const;

  mutable WrappedText content_;  ///< Keeps the last layout.
  QFont font_;                   ///< Before any shrinking.
  QFont shrunk_;
  QColor color_ = Qt::black;
  Alignment alignment_ = Alignment::center;
  WrappedText::Vertical vertical_ = WrappedText::Vertical::middle;
  bool digits_ = false;
};

}  // namespace kifo
