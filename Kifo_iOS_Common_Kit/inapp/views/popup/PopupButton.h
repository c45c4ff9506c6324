#pragma once

#include <optional>

#include <QPushButton>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/WrappedText.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

namespace kifo {

/// A push button in a campaign's colours: a filled, rounded surface with its caption, or the
/// caption alone when the campaign gives no surface.
///
/// **Threading:** UI thread only.
class PopupButton : public PopupControl<QPushButton> {
  Q_OBJECT

 public:
  PopupButton(const PopupTheme& theme, TextRole role, QWidget* parent);

  /// The caption, which is the accessible name too unless another is set.
  void setCaption(const QString& caption);
  /// Empty colours: no surface, ink for the text.
  void setColors(const std::optional<QColor>& surface, const std::optional<QColor>& text);
  void setCornerRadius(double radius);
  /// The surface is drawn this far inside the control, above and below; the target stays whole.
  void setSurfaceInset(int inset);
  /// Looks as if it could not be used yet. Pressing it works all the same.
  void setDimmed(bool dimmed);
  [[nodiscard]] bool isDimmed() const { return dimmed_; }

  [[nodiscard]] std::optional<QColor> surface() const { return surface_; }
  [[nodiscard]] QColor captionColor() const;
  [[nodiscard]] int heightFor(int width) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QColor seenSurface() const;
  [[nodiscard]] QRectF surfaceRect() const;
  void paintSurface(QPainter& painter) const;

  PopupTheme theme_;
  TextRole role_;
  WrappedText caption_;
  std::optional<QColor> surface_;
  std::optional<QColor> text_;
  double radius_ = 8;
  int inset_ = 0;
  bool dimmed_ = false;
};

}  // namespace kifo
