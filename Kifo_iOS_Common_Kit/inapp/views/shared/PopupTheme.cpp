#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupTheme.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QFontInfo>
#include <QPalette>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupColors.h"

namespace kifo {
namespace {

struct Face {
  int pixels;
  QFont::Weight weight;
};

Face faceOf(TextRole role) {
  switch (role) {
    case TextRole::title:
      return {20, QFont::DemiBold};
    case TextRole::description:
      return {15, QFont::Normal};
    case TextRole::question:
      return {16, QFont::Medium};
    case TextRole::option:
      return {15, QFont::Medium};
    case TextRole::button:
      return {16, QFont::DemiBold};
    case TextRole::label:
      return {14, QFont::Medium};
    case TextRole::field:
      return {15, QFont::Normal};
    case TextRole::score:
      return {18, QFont::Bold};
    case TextRole::bound:
      return {13, QFont::Medium};
    case TextRole::counter:
      return {10, QFont::Normal};
    case TextRole::coupon:
      return {20, QFont::Bold};
  }
  return {15, QFont::Normal};
}

QColor fillOf(const PopupPreferences& p) {
  if (p.appCommunicationItem) {
    if (const auto color = colorOf(p.appCommunicationItem->bgColor)) return *color;
  }
  return p.backgroundColor ? toQColor(*p.backgroundColor) : QColor(Qt::white);
}

QColor accentOf(const PopupPreferences& p, const PopupTheme& theme) {
  const auto wanted = p.submitButton ? colorOf(p.submitButton->color) : std::nullopt;
  if (!wanted) return theme.ink;
  const QColor seen = over(*wanted, theme.panel);
  return contrastRatio(seen, theme.panel) >= 3.0 ? seen : theme.ink;
}

}  // namespace

PopupTheme PopupTheme::of(const PopupPreferences& preferences, const PopUpOptions& options,
                          const QWidget* host) {
  PopupTheme theme;
  theme.options = options;
  theme.options.fontScale =
      std::clamp(std::isfinite(options.fontScale) ? options.fontScale : 1.0, 1.0, 2.0);
  // The host's font by the name it resolves to, so that what it lacks, and only that, comes in
  // colour.
  theme.families = {QFontInfo(QApplication::font()).family(), QStringLiteral("Noto Color Emoji")};
  theme.panelFill = fillOf(preferences);
  const QPalette palette = host ? host->palette() : QApplication::palette();
  theme.panel = over(theme.panelFill, mixed(palette.color(QPalette::Window), Qt::black, 0.3));
  theme.ink = inkOn(theme.panel);
  theme.accent = accentOf(preferences, theme);
  return theme;
}

QFont PopupTheme::font(TextRole role) const {
  const Face face = faceOf(role);
  QFont font = QApplication::font();
  font.setFamilies(families);
  font.setPixelSize(static_cast<int>(std::lround(face.pixels * options.fontScale)));
  font.setWeight(face.weight);
  font.setItalic(false);
  return font;
}

QColor PopupTheme::text(const QColor& wanted, const QColor& behind) const {
  return legibleOn(wanted, behind, options.contrast);
}

QColor PopupTheme::shade(double amount) const {
  return mixed(panel, ink, amount);
}

int PopupTheme::milliseconds(std::chrono::milliseconds duration) const {
  return options.reducedMotion ? 0 : static_cast<int>(duration.count());
}

}  // namespace kifo
