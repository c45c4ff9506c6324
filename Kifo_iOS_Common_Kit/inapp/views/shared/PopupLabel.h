#pragma once

#include <QLabel>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/WrappedText.h"

namespace kifo {

/// A text of a campaign: plain (markup is shown, never followed), wrapped, in the colours of the
/// campaign whatever the host's style says.
///
/// **Threading:** UI thread only.
class PopupLabel : public QLabel {
  Q_OBJECT

 public:
  using Alignment = WrappedText::Alignment;

  explicit PopupLabel(QWidget* parent);

  void setLabel(const QString& text);
  void setFace(const QFont& font, const QColor& color, Alignment alignment = Alignment::center);
  [[nodiscard]] QColor textColor() const { return color_; }

  /// The height that the text needs at this width.
  [[nodiscard]] int heightFor(int width) const;
  /// A text that is lower than its place stands near the place's top instead of in its middle.
  void setNearTop(bool nearTop) { nearTop_ = nearTop; }
  /// Makes the type smaller, but not below `pixels`, until the text fits on one line of this width.
  void shrinkToFit(int width, int pixels);
  /// The text is digits and needs no room for accents and descenders.
  void setDigits(bool digits) { digits_ = digits; }
  [[nodiscard]] int naturalWidth() const { return content_.naturalWidth(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void realign();

  WrappedText content_;
  QColor color_ = Qt::black;
  Alignment alignment_ = Alignment::center;
  QFont wanted_;  ///< The type before any shrinking.
  bool digits_ = false;
  bool nearTop_ = false;
};

}  // namespace kifo
