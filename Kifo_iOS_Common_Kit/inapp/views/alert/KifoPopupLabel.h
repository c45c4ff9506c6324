#pragma once

#include <QColor>
#include <QFont>
#include <QLabel>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/WrappedText.h"

namespace kifo {

/// A piece of plain text in an alert's card. It paints itself, so that no style sheet of the host
/// can make it unreadable, wraps anywhere if it must, and may shrink to stay on one line.
///
/// **Threading:** UI thread only.
class KifoPopupLabel : public QLabel {
  Q_OBJECT
 public:
  explicit KifoPopupLabel(QWidget* parent = nullptr);

  /// `alignment`: horizontal; left and right are leading and trailing.
  void setLook(const QFont& font, const QColor& color, Qt::Alignment alignment);
  /// How small the text may get, 0 to 1, before it wraps; 1 is the default.
  void setMinimumScale(double scale) { minimumScale_ = scale; }

  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  /// The width of the text on one line.
  [[nodiscard]] int naturalWidth() const;
  [[nodiscard]] QColor color() const { return color_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// The text as it is set in `width`.
  const WrappedText& wrapped(int width) const;
  [[nodiscard]] QFont fontFor(int width) const;

  QFont font_;
  QColor color_;
  Qt::Alignment alignment_ = Qt::AlignLeft;
  mutable WrappedText wrapped_;  ///< Keeps the last layout.
  double minimumScale_ = 1;
};

}  // namespace kifo
