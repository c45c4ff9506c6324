#pragma once

#include <optional>

#include <QPushButton>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"
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

  /// Caption, name and colours.
  void setOption(const OptionText& option);
  /// The caption, which is the accessible name too unless another is set.
  void setCaption(const QString& caption);
  /// Empty colours: no surface, ink for the text.
  void setColors(const std::optional<QColor>& surface, const std::optional<QColor>& text);
  void setCornerRadius(double radius);
  /// The surface is drawn this far inside the control, above and below; the target stays whole.
  void setSurfaceInset(int inset);
  /// Looks as if it could not be used yet. Pressing it works all the same.
  void setDimmed(bool dimmed);
  [[nodiscard]] bool isDimmed() const { return look_.isDimmed; }

  [[nodiscard]] std::optional<QColor> surface() const { return look_.surface; }
  [[nodiscard]] QColor captionColor() const { return look_.captionColor(); }
  [[nodiscard]] int heightFor(int width) const { return look_.heightFor(width); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ButtonLook look_;
  QString chooseFirst_;
};

}  // namespace kifo
