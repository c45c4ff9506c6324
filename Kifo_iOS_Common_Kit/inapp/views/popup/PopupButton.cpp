#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"

#include <QPaintEvent>

namespace kifo {

PopupButton::PopupButton(const PopupTheme& theme, TextRole role, QWidget* parent)
    : PopupControl(parent),
      look_(theme, role, layoutDirection()),
      chooseFirst_(theme.options.texts.chooseFirst) {}

void PopupButton::setOption(const OptionText& option) {
  setCaption(option.caption);
  if (option.name != option.caption) setAccessibleName(option.name);
  setColors(option.surface, option.text);
}

void PopupButton::setCaption(const QString& caption) {
  look_.caption.setText(caption);
  setText(caption);
  update();
}

void PopupButton::setColors(const std::optional<QColor>& surface,
                            const std::optional<QColor>& text) {
  look_.surface = surface;
  look_.text = text;
  update();
}

void PopupButton::setCornerRadius(double radius) {
  look_.radius = radius;
  update();
}

void PopupButton::setSurfaceInset(int inset) {
  look_.inset = inset;
  update();
}

void PopupButton::setDimmed(bool dimmed) {
  look_.isDimmed = dimmed;
  setAccessibleDescription(dimmed ? chooseFirst_ : QString());
  update();
}

void PopupButton::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  look_.paint(painter, rect(), touch(), event->rect());
}

}  // namespace kifo
