#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"

#include <algorithm>

#include <QPaintEvent>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

constexpr int kSidePadding = 12;
constexpr int kTextPadding = 8;         ///< Above and below the caption within the surface.
constexpr double kDimmedSurface = 0.3;  ///< Of the surface's colour in the panel's.
constexpr double kDimmedText = 0.5;     ///< Of ink in the surface.
constexpr double kSeenBorder =
    1.25;  ///< Below this contrast a surface needs an outline to be seen.

}  // namespace

PopupButton::PopupButton(const PopupTheme& theme, TextRole role, QWidget* parent)
    : PopupControl(parent), theme_(theme), role_(role) {
  caption_.setFont(theme.font(role));
  caption_.setAlignment(WrappedText::Alignment::center, layoutDirection());
}

void PopupButton::setCaption(const QString& caption) {
  caption_.setText(caption);
  setText(caption);
  update();
}

void PopupButton::setColors(const std::optional<QColor>& surface,
                            const std::optional<QColor>& text) {
  surface_ = surface;
  text_ = text;
  update();
}

void PopupButton::setCornerRadius(double radius) {
  radius_ = radius;
  update();
}

void PopupButton::setSurfaceInset(int inset) {
  inset_ = inset;
  update();
}

void PopupButton::setDimmed(bool dimmed) {
  dimmed_ = dimmed;
  setAccessibleDescription(dimmed ? theme_.options.texts.chooseFirst : QString());
  update();
}

QColor PopupButton::seenSurface() const {
  const QColor seen = surface_ ? over(*surface_, theme_.panel) : theme_.panel;
  return dimmed_ ? mixed(theme_.panel, seen, kDimmedSurface) : seen;
}

QColor PopupButton::captionColor() const {
  const QColor behind = seenSurface();
  if (dimmed_) return theme_.text(role_, mixed(behind, inkOn(behind), kDimmedText), behind);
  return theme_.text(role_, text_.value_or(inkOn(behind)), behind);
}

int PopupButton::heightFor(int width) const {
  return caption_.heightFor(width - 2 * kSidePadding) + 2 * (kTextPadding + inset_);
}

QRectF PopupButton::surfaceRect() const {
  return QRectF(rect()).adjusted(0, inset_, 0, -inset_);
}

void PopupButton::paintSurface(QPainter& painter) const {
  const QColor seen = seenSurface();
  const QRectF bounds = surfaceRect();
  const double touched = isDown() ? 0.16 : underMouse() && isEnabled() ? 0.08 : 0.0;
  painter.setPen(Qt::NoPen);
  if (surface_ || touched > 0) {
    const bool asGiven = surface_ && !dimmed_ && touched == 0;
    painter.setBrush(asGiven ? *surface_ : mixed(seen, inkOn(seen), touched));
    painter.drawRoundedRect(bounds, radius_, radius_);
  }
  if (surface_ && contrastRatio(seen, theme_.panel) < kSeenBorder) {
    painter.setPen(QPen(theme_.shade(0.3), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5), radius_, radius_);
  }
}

void PopupButton::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintSurface(painter);
  const QRectF text = surfaceRect().adjusted(kSidePadding, 0, -kSidePadding, 0);
  caption_.draw(painter, text, captionColor(), event->rect());
  if (!showsFocus()) return;
  paintFocusRing(painter, surfaceRect(), radius_, seenSurface(), theme_.accent);
}

}  // namespace kifo
